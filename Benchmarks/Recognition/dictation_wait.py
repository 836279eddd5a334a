#!/usr/bin/env python3
"""How long somebody waits for the words after the stop, and what a dictation costs: whole dictations through the application.

usage: Tests/Support/private-session --wm --pulse -- dictation_wait.py MURMEL [SECONDS …]

MURMEL is an executable with the Whisper model in its resources (scripts/fetch-model). Dictates recordings of these lengths
(10 60 10 60 unless told), made of natural prompts and of the same sentences spoken by three synthetic voices, with pauses of
0.4 to 4 s between them and 0.3 to 1 s of silence before the stop. Prints for each: the wait until the text is delivered, the
worker's processor time in it and in all, and the words missing or wrong; then the medians. On two processors: taskset -c 0,1.
"""

import gzip
import json
import os
import pathlib
import random
import re
import statistics
import subprocess
import sys
import tempfile
import threading
import time

MURMEL = pathlib.Path(sys.argv[1]).resolve()
LENGTHS = [int(length) for length in sys.argv[2:]] or [10, 60, 10, 60]
SOUNDS = pathlib.Path("/usr/share/asterisk/sounds/en_US_f_Allison")
TRANSCRIPTS = "/usr/share/doc/asterisk-core-sounds-en/core-sounds-en.txt.gz"
VOICES = ["natural", "natural", "rms", "slt", "awb"]
TICKS = os.sysconf("SC_CLK_TCK")


def decoded(*arguments):
    return subprocess.run(["ffmpeg", "-v", "error", *map(str, arguments), "-ar", "16000", "-ac", "1", "-f", "s16le", "-"],
                          capture_output=True, check=True).stdout


def spoken(name, text, voice):
    if voice == "natural":
        return decoded("-f", "g722", "-i", SOUNDS / f"{name}.g722")
    with tempfile.NamedTemporaryFile(suffix=".wav") as file:
        subprocess.run(["flite", "-voice", voice, "-t", text, "-o", file.name], check=True)
        return decoded("-i", file.name)


def prompts():
    lines = gzip.open(TRANSCRIPTS, "rt").read().splitlines()
    pairs = [line.split(": ", 1) for line in lines if re.fullmatch(r"[\w-]+: [^\[]{45,150}", line)]
    return [(name, text) for name, text in pairs if (SOUNDS / f"{name}.g722").exists()]


def recording(sentences, voice, seconds, chance):
    """Samples and what is said."""
    samples, said = b"", []
    while len(samples) < 32000 * (seconds - 3):
        name, text = chance.choice([sentence for sentence in sentences if sentence[1] not in said[-20:]])  # two may be alike
        if samples:
            samples += bytes(32 * chance.choice([400, 800, 1200, 2000, 4000]))
        samples += spoken(name, text, voice)
        said.append(text)
    return samples + bytes(32 * chance.choice([300, 600, 1000])), " ".join(said)


def words(text):
    text = re.sub(r"\d", lambda digit: f" {'zero one two three four five six seven eight nine'.split()[int(digit[0])]} ", text.lower())
    return re.sub(r"[^a-z']+", " ", text).split()


def differences(said, heard):
    """Words missing, wrong or too many."""
    row = list(range(len(heard) + 1))
    for i, word in enumerate(said, 1):
        before, row[0] = row[:], i
        for j, other in enumerate(heard, 1):
            row[j] = min(before[j] + 1, row[j - 1] + 1, before[j - 1] + (word != other))
    return row[-1]


def figures(process):
    """Parent and processor time in seconds."""
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
    return int(fields[1]), (int(fields[11]) + int(fields[12])) / TICKS


class Application:
    def __init__(self):
        folder = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "MRM")
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "defaults.json").write_text(json.dumps({"onboarding.completed": True, "settings.feedbackSound": False}))
        self.ended, self.summary = threading.Event(), ""
        self.process = subprocess.Popen([MURMEL], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        threading.Thread(target=self.read, daemon=True).start()
        while "Ready" not in self.command("status").stdout:
            time.sleep(0.2)

    def read(self):
        for line in self.process.stdout:
            if "dictation_stop" in line:
                self.summary = line
                self.ended.set()

    def command(self, *arguments):
        return subprocess.run([MURMEL, *arguments], capture_output=True, text=True)

    def worker(self):
        """Its process and its processor time, or nothing."""
        for status in pathlib.Path("/proc").glob("[0-9]*/comm"):
            try:
                if status.read_text().startswith("mrm-fluidaudio"):
                    parent, seconds = figures(status.parent.name)
                    if parent == self.process.pid:
                        return int(status.parent.name), seconds
            except OSError:
                continue
        return None

    def worker_time(self):
        return (self.worker() or (0, 0))[1]

    def dictate(self, samples):
        """The wait, the worker's time in it and in all, and the text."""
        self.ended.clear()
        before = self.worker_time()
        assert self.command("start").returncode == 0
        subprocess.run(["paplay", "-d", "mic", "--raw", "--rate=16000", "--channels=1", "--format=s16le"], input=samples, check=True)
        stopping, stopped = self.worker_time(), time.monotonic()
        self.command("stop")
        assert self.ended.wait(300), "no end of the dictation"
        wait = time.monotonic() - stopped
        spent = self.worker_time()
        # Nobody takes the text: it stays on the clipboard.
        text = subprocess.run(["xclip", "-o", "-selection", "clipboard"], capture_output=True, text=True, timeout=20).stdout
        return wait, spent - stopping, spent - before, text


def main():
    chance = random.Random(7)
    sentences = prompts()
    application = Application()
    waits = {length: [] for length in LENGTHS}
    for number, length in enumerate(LENGTHS):
        voice = VOICES[number // len(waits) % len(VOICES)]
        samples, said = recording(sentences, voice, length, chance)
        wait, late, spent, text = application.dictate(samples)
        waits[length].append(wait)
        wrong = differences(words(said), words(text))
        print(f"{len(samples) / 32000:6.1f} s, {voice}: wait {wait:.2f} s, worker {late:.2f} s of {spent:.2f} s, "
              f"{wrong} of {len(words(said))} words differ, load {os.getloadavg()[0]:.0f}", flush=True)
        time.sleep(3)
    application.command("quit")
    for length, times in waits.items():
        print(f"{length} s: median {statistics.median(times):.2f} s, longest {max(times):.2f} s of {len(times)}")


if __name__ == "__main__":
    main()
