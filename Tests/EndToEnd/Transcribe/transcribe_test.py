#!/usr/bin/env python3
"""`murmel transcribe` as a user runs it: no display, real speech, real worker; and files that are not what they should be.

usage: transcribe_test.py MURMEL
"""

import math
import pathlib
import re
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
    """(recording, what is said) of every natural recording of the package."""
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
    return pairs


class TranscribeTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def test_real_speech_becomes_its_words(self):
        pairs = corpus(self.folder)
        self.assertGreaterEqual(len(pairs), 10)
        result = run("transcribe", *(path for path, _ in pairs))
        self.assertEqual(result.returncode, 0, result.stderr)
        lines = result.stdout.splitlines()
        self.assertEqual(len(lines), len(pairs), result.stdout)

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
        source = DATA / "cards" / "005.wav"
        expected = run("transcribe", source).stdout
        self.assertRegex(expected, "(7|seven) of hearts")
        variants = {"float.wav": ["-e", "floating-point", "-b", "32"], "deep.wav": ["-b", "24"],
                    "stereo48.wav": ["-r", "48000", "-c", "2"], "cd.wav": ["-r", "44100"], "wide.wav": ["-r", "96000"]}
        for name, options in variants.items():
            subprocess.run(["sox", source, *options, self.folder / name], check=True, capture_output=True)
        result = run("transcribe", *(self.folder / name for name in variants))
        self.assertEqual(result.returncode, 0, result.stderr)
        for name, line in zip(variants, result.stdout.splitlines(), strict=True):
            self.assertIn("of hearts", line, name)

    def test_a_command_without_a_running_murmel_says_so(self):
        result = run("toggle")
        self.assertEqual(result.returncode, 1)
        self.assertIn("Murmel is not running.", result.stderr)

    def test_the_version_names_the_edition(self):
        result = run("--version")
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stdout, r"^Murmel \d+\.\d+\.\d+ \(\d+\), Development build$")


if __name__ == "__main__":
    unittest.main(verbosity=2)
