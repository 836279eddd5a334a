#!/usr/bin/env python3
"""Punctuation and capitals of recognised prompts against their transcripts, as recognised and after a language model.

usage: formatting_quality.py RESOURCES [FORMATTING_QUALITY LLAMA_SERVER MODEL.gguf SECONDS]
Takes the 60 prompts of Tests/Integration/SpeechWorker/whisper_test.py and the Whisper model of RESOURCES.
"""

import difflib
import os
import pathlib
import random
import re
import subprocess
import sys

os.environ["MURMEL_ALL_PROMPTS"] = "1"
TEST = pathlib.Path(__file__).parents[2] / "Tests/Integration/SpeechWorker/whisper_test.py"


def prompts():
    """The recognised text of each prompt, and its transcript."""
    source = TEST.read_text().replace("sys.exit(main())", "")
    names = {"__name__": "prompts"}
    exec(compile(source, TEST, "exec"), names)
    lines = names["gzip"].open(names["TRANSCRIPTS"], "rt").read().splitlines()
    pairs = [line.split(": ", 1) for line in lines if re.fullmatch(r"[\w-]+: [^\[]{45,150}", line)]
    pairs = [(names["SOUNDS"] / f"{name}.g722", text) for name, text in pairs]
    pairs = [(path, text) for path, text in pairs if path.exists()]
    random.Random(1).shuffle(pairs)
    worker = names["Worker"]()
    for path, text in pairs[:60]:
        yield worker.hear(names["decoded"]("-f", "g722", "-i", path), language="en"), text


def words(text):
    """(key, mark behind it, begins with a capital) of each word; three points are one."""
    found = re.findall(r"([\w'’]+)([^\w\s'’]*)", text.replace("...", "."))
    return [(word.lower(), "".join(mark for mark in marks if mark in ".,?!")[:1], word[0].isupper()) for word, marks in found]


def score(pairs):
    matched = marks = capitals = 0
    for recognised, transcript in pairs:
        left, right = words(recognised), words(transcript)
        blocks = difflib.SequenceMatcher(None, [word[0] for word in left], [word[0] for word in right], False)
        for block in blocks.get_matching_blocks():
            for offset in range(block.size):
                said, meant = left[block.a + offset], right[block.b + offset]
                matched += 1
                marks += said[1] != meant[1]
                capitals += said[2] != meant[2]
    return f"{matched} words, {marks} marks and {capitals} capitals differ ({100 * marks / matched:.1f} %, {100 * capitals / matched:.1f} %)"


def main():
    pairs = list(prompts())
    print("as recognised:", score(pairs))
    if len(sys.argv) == 6:
        lines = "\n".join(recognised for recognised, _ in pairs)
        refined = subprocess.run(sys.argv[2:], input=lines, capture_output=True, text=True, check=True).stdout.splitlines()
        changed = sum(before != after for (before, _), after in zip(pairs, refined))
        print("refined:", score([(after, transcript) for after, (_, transcript) in zip(refined, pairs)]), f"{changed} texts changed")


main()
