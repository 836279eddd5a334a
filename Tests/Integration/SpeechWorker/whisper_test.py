#!/usr/bin/env python3
"""How well the packaged Whisper model hears, through the real worker: studio prompts, and clips in which nobody speaks.

usage: whisper_test.py RESOURCES MODEL
A few prompts and clips each; all of them with MURMEL_ALL_PROMPTS=1. Exits with 77 (left out) without the model.
"""

import base64
import gzip
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

RESOURCES = pathlib.Path(sys.argv[1]).resolve()
MODEL = pathlib.Path(sys.argv[2]).resolve()
SOUNDS = pathlib.Path("/usr/share/asterisk/sounds/en_US_f_Allison")
TRANSCRIPTS = "/usr/share/doc/asterisk-core-sounds-en/core-sounds-en.txt.gz"
RATE = 16000
EVERYTHING = os.environ.get("MURMEL_ALL_PROMPTS")
DIGITS = "zero one two three four five six seven eight nine".split()
SPELLINGS = {"dialled": "dialed", "voice mail": "voicemail", "log in": "login", "logged in": "loggedin"}


class Worker:
    def __init__(self):
        # On one processor: what is measured is words, not time.
        self.process = subprocess.Popen(
            ["taskset", "-c", str(min(os.sched_getaffinity(0))), RESOURCES / "Workers/mrm-fluidaudio-worker", "--model-dir", MODEL,
             "--precision", "int8"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        assert json.loads(self.process.stdout.readline())["event"] == "ready"

    def hear(self, samples, **more):
        request = {"id": 1, "sample_rate": RATE, "pcm_s16le_base64": base64.b64encode(samples).decode(), **more}
        self.process.stdin.write(json.dumps(request).encode() + b"\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())["text"]


def decoded(*arguments):
    return subprocess.run(["ffmpeg", "-v", "error", *map(str, arguments), "-ar", str(RATE), "-ac", "1", "-f", "s16le", "-"],
                          capture_output=True, check=True).stdout


def words_of(text):
    text = re.sub(r"\d", lambda digit: f" {DIGITS[int(digit[0])]} ", text.lower())
    text = re.sub(r"[^a-z' ]+", " ", text)
    text = re.sub(r"\s+", " ", text).strip()
    for written, meant in SPELLINGS.items():
        text = text.replace(written, meant)
    return text


def prompts():
    """(samples, what is said) of prompts of about 3 to 10 s, always the same ones."""
    lines = gzip.open(TRANSCRIPTS, "rt").read().splitlines()
    pairs = [line.split(": ", 1) for line in lines if re.fullmatch(r"[\w-]+: [^\[]{45,150}", line)]
    pairs = [(SOUNDS / f"{name}.g722", text) for name, text in pairs if (SOUNDS / f"{name}.g722").exists()]
    random.Random(1).shuffle(pairs)
    return [(decoded("-f", "g722", "-i", path), words_of(text)) for path, text in pairs[: 60 if EVERYTHING else 6]]


def clips():
    """Silence, noise, hum, clicks and music."""
    sources = [f"anoisesrc=color={color}:amplitude={level}" for color in ("white", "pink", "brown")
               for level in (0.003, 0.01, 0.03, 0.1)]
    sources += [f"sine=frequency={hertz}" for hertz in (50, 60, 100, 440)]
    sources += ["anullsrc", "aevalsrc=0.5*lt(mod(t\\,0.7)\\,0.002)", "aevalsrc=0.2*sin(2*PI*t*220*pow(2\\,floor(mod(t*4\\,8))/12))",
                "aevalsrc=0.01*random(0)+0.4*lt(mod(t\\,1.3)\\,0.001)"]
    every = [(source, seconds) for seconds in (0.5, 2, 10) for source in sources]
    return [(source, seconds, decoded("-f", "lavfi", "-t", seconds, "-i", source))
            for source, seconds in (every if EVERYTHING else every[1::9])]


def errors(report):
    return re.search(r"Sum\s*\|\s*\d+\s+(\d+)\s*\|(?:\s*\d+){4}\s+(\d+)", report).groups()


def main():
    if not any(MODEL.glob("*.bin")):
        print("left out: the Whisper model is not there (scripts/fetch-model)")
        return 77
    worker = Worker()
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        with open(folder / "ref", "w") as reference, open(folder / "hyp", "w") as heard:
            for number, (samples, text) in enumerate(prompts()):
                answer = worker.hear(samples, language="en")
                print(f"{text} | {answer}")
                reference.write(f"{text} (s_{number})\n")
                heard.write(f"{words_of(answer)} (s_{number})\n")
        report = subprocess.run(["sctk", "sclite", "-r", folder / "ref", "trn", "-h", folder / "hyp", "trn", "-i", "spu_id",
                                 "-o", "rsum", "stdout"], capture_output=True, text=True, check=True).stdout
    words, wrong = map(int, errors(report))
    print(f"{wrong} of {words} words wrong: {100 * wrong / words:.1f} %")
    if wrong > 0.04 * words:
        failures.append("more than 4 % of the words are wrong")
    for source, seconds, samples in clips():
        for language in ({"language": "en"}, {}) if EVERYTHING else ({"language": "en"},):
            if answer := worker.hear(samples, **language):
                failures.append(f"{answer!r} was heard in {seconds} s of {source} {language}")
    print("\n".join(failures))
    return 1 if failures else 0


sys.exit(main())
