#!/usr/bin/env python3
"""`murmel transcribe` as a user runs it: no display, real speech, real worker; and files that are not what they should be.

usage: transcribe_test.py MURMEL        MURMEL_ALL_RECORDINGS: all of the package, not the shorter ones
"""

import json
import math
import os
import pathlib
import re
import signal
import struct
import subprocess
import sys
import tempfile
import unittest
import wave

MURMEL = sys.argv.pop(1)
DATA = pathlib.Path("/usr/share/pocketsphinx/test/data")
# Two recordings have no transcript beside them; this is what is said in them.
RAW = {"goforward": "go forward ten meters", "numbers": "thirty three four six ninety nine"}


def run(*arguments, **options):
    return subprocess.run([MURMEL, *map(str, arguments)], capture_output=True, text=True, timeout=120, **options)


def write_wave(path, samples, rate=16000, width=2):
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(width)
        file.setframerate(rate)
        file.writeframes(b"".join(struct.pack("<h", sample) for sample in samples))


def words_of(text):
    """As written in the references: without marks, titles spelled out."""
    text = re.sub(r"[^a-z' ]", " ", text.lower())
    return re.sub(r"\bmr\b", "mister", re.sub(r"\s+", " ", text)).strip()


def corpus(folder):
    """(recording, what is said) of the natural recordings of the package."""
    pairs = []
    for name, transcription in (("librivox", "librivox/transcription"), ("cards", "cards/cards.transcription")):
        for line in (DATA / transcription).read_text().splitlines():
            text, identifier = re.fullmatch(r"<s>(.*)</s>\s*\((.*)\)", line).groups()
            pairs.append((DATA / name / (identifier + ".wav"), words_of(text)))
    for name, text in RAW.items():
        path = DATA / (name + ".raw")
        if path.exists():
            raw = path.read_bytes()
            target = folder / (name + ".wav")
            write_wave(target, struct.unpack(f"<{len(raw) // 2}h", raw))
            pairs.append((target, text))
    longest = 10_000_000 if "MURMEL_ALL_RECORDINGS" in os.environ else 100_000  # 3 s
    return [(path, text) for path, text in pairs if path.stat().st_size < longest]


class TranscribeTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def test_real_speech_becomes_its_words(self):
        pairs = corpus(self.folder)
        self.assertGreaterEqual(len(pairs), 6)
        result = run("transcribe", *(path for path, _ in pairs))
        self.assertEqual(result.returncode, 0, result.stderr)
        lines = []
        for (path, _), line in zip(pairs, result.stdout.splitlines(), strict=True):
            self.assertTrue(line.startswith(f"{path}: "), line)
            lines.append(line.removeprefix(f"{path}: "))

        for name, texts in (("ref", [text for _, text in pairs]), ("hyp", map(words_of, lines))):
            (self.folder / name).write_text("".join(f"{text} (s_{n})\n" for n, text in enumerate(texts)))
        report = subprocess.run(
            ["sctk", "sclite", "-r", self.folder / "ref", "trn", "-h", self.folder / "hyp", "trn", "-i", "spu_id",
             "-o", "rsum", "stdout"], capture_output=True, text=True, check=True).stdout
        total = re.search(r"Sum\s*\|\s*(\d+)\s+(\d+)\s*\|\s*(\d+)\s+(\d+)\s+(\d+)\s+(\d+)\s+(\d+)", report)
        _, words, correct, substituted, deleted, inserted, errors = map(int, total.groups())
        self.assertEqual(correct + substituted + deleted, words)
        rate = 100 * errors / words
        print(f"word error rate {rate:.1f} % of {words} words "
              f"({substituted} substituted, {deleted} deleted, {inserted} inserted)")
        self.assertLessEqual(rate, 35)

    def test_damaged_files_are_refused_by_name_and_the_others_still_transcribed(self):
        good = DATA / "cards" / "001.wav"
        (self.folder / "empty.wav").write_bytes(b"")
        (self.folder / "text.wav").write_text("this is not a recording")
        (self.folder / "header.wav").write_bytes(good.read_bytes()[:20])
        cases = [self.folder / name for name in ("empty.wav", "text.wav", "header.wav", "missing.wav")] + [self.folder]
        result = run("transcribe", *cases, good)
        self.assertEqual(result.returncode, 1)
        self.assertIn("clubs", result.stdout)
        complaints = result.stderr.splitlines()
        self.assertEqual(len(complaints), len(cases), result.stderr)
        for case, complaint in zip(cases, complaints):
            self.assertIn(str(case), complaint)

    def test_a_truncated_recording_gives_the_words_that_are_there(self):
        whole = (DATA / "cards" / "005.wav").read_bytes()
        (self.folder / "cut.wav").write_bytes(whole[: len(whole) * 2 // 3 + 1])
        result = run("transcribe", self.folder / "cut.wav")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stdout, "(8|eight) of spades")

    def test_nothing_is_invented_where_nobody_speaks(self):
        hum = [int(2000 * math.sin(2 * math.pi * 50 * n / 16000)) for n in range(16000 * 3)]
        write_wave(self.folder / "silence.wav", [0] * 16000 * 3)
        write_wave(self.folder / "hum.wav", hum)
        result = run("transcribe", self.folder / "silence.wav", self.folder / "hum.wav")
        self.assertEqual((result.returncode, result.stdout), (0, ""), result.stderr)

    def test_formats_of_other_programs_say_the_same(self):
        source = DATA / "cards" / "001.wav"
        variants = {"float.wav": ["-c:a", "pcm_f32le"], "deep.wav": ["-c:a", "pcm_s24le"], "cd.wav": ["-ar", "44100"],
                    "stereo48.wav": ["-ar", "48000", "-ac", "2"], "big.rf64.wav": ["-rf64", "always"], "a.flac": [],
                    "a.ogg": ["-c:a", "libvorbis"], "a.opus": [], "a.mp3": []}
        for name, options in variants.items():
            subprocess.run(["ffmpeg", "-loglevel", "error", "-i", source, *options, self.folder / name], check=True)
        result = run("transcribe", *(self.folder / name for name in variants))
        self.assertEqual(result.returncode, 0, result.stderr)
        for name, line in zip(variants, result.stdout.splitlines(), strict=True):
            self.assertIn("of clubs", line, name)
        for name in ("a.opus", "cd.wav"):
            with (self.folder / name).open("rb") as file:
                piped = run("transcribe", "-", stdin=file)
            self.assertIn("of clubs", piped.stdout, piped.stderr)
        with subprocess.Popen(["cat", self.folder / "a.flac"], stdout=subprocess.PIPE) as through:
            self.assertIn("of clubs", run("transcribe", "-", stdin=through.stdout).stdout)

    def test_other_forms_have_the_times(self):
        source = DATA / "cards" / "003.wav"
        spoken = json.loads(run("transcribe", "--json", source).stdout)
        self.assertTrue(spoken["complete"])
        ends = [0] + [end for segment in spoken["segments"] for end in (segment["start"], segment["end"])]
        self.assertEqual(ends, sorted(ends))
        self.assertLessEqual(ends[-1], spoken["seconds"] + 0.001)
        self.assertEqual(words_of(" ".join(segment["text"] for segment in spoken["segments"])), words_of(spoken["text"]))
        for form, first in (("--srt", "1\n00:00:0"), ("--vtt", "WEBVTT\n\n1\n00:00:0")):
            self.assertTrue(run("transcribe", form, source).stdout.startswith(first))
        self.assertEqual(run("transcribe", "--srt", source, source).returncode, 2)

    def test_hostile_files_end_with_a_reason(self):
        whole = (DATA / "cards" / "001.wav").read_bytes()
        hostile = {"rate.wav": struct.pack("<I", 0x7FFFFFFF), "slow.wav": struct.pack("<I", 1)}
        for name, rate in hostile.items():
            (self.folder / name).write_bytes(whole[:24] + rate + whole[28:])
        (self.folder / "channels.wav").write_bytes(whole[:22] + b"\xff\xff" + whole[24:])
        (self.folder / "song.m4a").write_bytes(b"\0\0\0\x20ftypM4A " + bytes(64))
        (self.folder / "endless.wav").write_bytes(whole[:40] + b"\xff\xff\xff\xff" + whole[44:])
        names = [*hostile, "channels.wav", "song.m4a", "endless.wav"]
        result = run("transcribe", *(self.folder / name for name in names))
        self.assertEqual(result.returncode, 1)
        for name in names[:-1]:
            self.assertIn(f"{self.folder / name}: ", result.stderr)
        self.assertIn(f"ffmpeg -i '{self.folder}/song.m4a'", result.stderr)
        self.assertIn("endless.wav: ", result.stdout, "the header's length is not believed")

    def test_an_interruption_prints_what_is_there(self):
        source = DATA / "cards" / "005.wav"
        murmel = subprocess.Popen([MURMEL, "transcribe", "--json", "--real-time", source, source],
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        first = murmel.stdout.readline()
        murmel.send_signal(signal.SIGINT)
        rest, complaints = murmel.communicate(timeout=60)
        self.assertEqual(murmel.returncode, 130, complaints)
        self.assertTrue(json.loads(first)["complete"])
        for line in rest.splitlines():  # none where the second file was not open yet
            self.assertFalse(json.loads(line)["complete"])

    def test_an_unknown_language_is_refused_with_those_that_are_known(self):
        result = run("transcribe", "--language", "xx", DATA / "cards" / "001.wav")
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertRegex(result.stderr, r"“xx” is not known here\. Known are: .*\ben\b")

    def test_what_cannot_be_written_is_a_failure(self):
        card = DATA / "cards/001.wav"
        for command, complaint in ((f"transcribe '{card}' >/dev/full", "the text could not be written: No space left on device"),
                                   (f"transcribe '{card}' >&-", "the text could not be written: Bad file descriptor"),
                                   ("settings list >&-", "The output could not be written."),
                                   ("settings list >/dev/full", "The output could not be written.")):
            result = subprocess.run(["sh", "-c", f"'{MURMEL}' {command}"], stderr=subprocess.PIPE, text=True, timeout=60)
            self.assertEqual((result.returncode, result.stderr), (1, f"murmel: {complaint}\n"), command)
        mute = subprocess.run(["sh", "-c", f"'{MURMEL}' toggle <&- >&- 2>&-"], timeout=60)
        self.assertEqual(mute.returncode, 3, "nothing is thrown where nothing can be said")

    def test_a_pipe_into_which_nobody_writes_is_waited_for_until_an_interruption(self):
        os.mkfifo(self.folder / "pipe")
        waiting = subprocess.Popen([MURMEL, "transcribe", self.folder / "pipe"], stderr=subprocess.PIPE, text=True)
        with open(self.folder / "pipe", "wb"):  # it is open on the other side, too
            waiting.send_signal(signal.SIGINT)
            self.assertEqual((waiting.communicate(timeout=60)[1], waiting.returncode), ("", 130))

    def test_limits_that_the_system_has_lowered_already_are_no_obstacle(self):
        lowered = f"ulimit -c 0; ulimit -n 128; '{MURMEL}' transcribe '{DATA}/cards/001.wav'"
        self.assertIn("of clubs", subprocess.run(["sh", "-c", lowered], capture_output=True, text=True, timeout=60).stdout)

    def test_tighter_limits_are_an_error_and_the_umask_is_not_taken(self):
        environment = {**os.environ, "XDG_CONFIG_HOME": str(self.folder / "configuration")}
        for limit, command, complaint in (("umask 777", "settings set historyEnabled true", ""),
                                          ("umask 000", "settings set historyEnabled false", ""),
                                          ("ulimit -f 0", "settings set historyEnabled true", "File too large"),
                                          ("ulimit -n 32", "", "“ulimit -n” must allow 128")):
            result = subprocess.run(["sh", "-c", f"{limit}; exec '{MURMEL}' {command}"], stderr=subprocess.PIPE,
                                    text=True, timeout=60, env=environment)
            self.assertEqual((result.returncode, complaint in result.stderr), (int(complaint != ""), True), result.stderr)
        modes = {path.stat().st_mode & 0o777 for path in (self.folder / "configuration").rglob("*")}
        self.assertEqual(modes, {0o700, 0o600})
        self.assertIn("false", run("settings", "get", "historyEnabled", env=environment).stdout)

    def test_a_command_without_a_running_murmel_says_so(self):
        result = run("toggle")
        self.assertEqual(result.returncode, 3)
        self.assertIn("Murmel is not running.", result.stderr)

    def test_the_version_names_the_edition(self):
        result = run("--version")
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stdout, r"^Murmel \d+\.\d+\.\d+ \(\d+\), Development build$")


if __name__ == "__main__":
    unittest.main(verbosity=2)
