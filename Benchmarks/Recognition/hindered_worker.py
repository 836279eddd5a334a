#!/usr/bin/env python3
"""Whether words are lost when the speech worker is killed, stopped for 4 s, or killed with its executable gone for 4 s.

usage: Tests/Support/private-session --wm --pulse -- hindered_worker.py MURMEL [MOMENTS]

Dictates the same kind of recordings as dictation_wait.py, one for each of 21 moments (unless told), which lie between the
beginning and the wait after the stop. MURMEL's folders must be writable: take a copy. Exits with 1 when words are missing.
"""

import itertools
import os
import random
import signal
import sys
import threading
import time

import dictation_wait as dictations

MOMENTS = int(sys.argv[2]) if len(sys.argv) > 2 else 21
EXECUTABLE = dictations.MURMEL.parent.parent / "lib/murmel/Workers/mrm-fluidaudio-worker"
SECONDS = 14


def killed(worker):
    os.kill(worker, signal.SIGKILL)


def stopped(worker):
    os.kill(worker, signal.SIGSTOP)
    time.sleep(4)
    os.kill(worker, signal.SIGCONT)


def missing(worker):
    aside = EXECUTABLE.with_suffix(".aside")
    EXECUTABLE.rename(aside)
    os.kill(worker, signal.SIGKILL)
    time.sleep(4)
    aside.rename(EXECUTABLE)


def hinder(application, how, after, done):
    time.sleep(after)
    while (worker := application.worker()) is None:
        time.sleep(0.02)
    how(worker[0])
    done.set()


def main():
    chance, sentences, lost = random.Random(11), dictations.prompts(), 0
    application = dictations.Application()
    for number, how in zip(range(MOMENTS), itertools.cycle((killed, stopped, missing))):
        samples, said = dictations.recording(sentences, "natural", SECONDS, chance)
        after = (len(samples) / 32000 + 0.8) * (number + 1) / MOMENTS
        done = threading.Event()
        threading.Thread(target=hinder, args=(application, how, after, done)).start()
        wait, _, _, text = application.dictate(samples)
        done.wait()
        heard, spoken = dictations.words(text), dictations.words(said)
        isLost = len(spoken) - len(heard) > 3
        lost += isLost
        print(f"{how.__name__} at {after:.1f} of {len(samples) / 32000:.1f} s: wait {wait:.1f} s, {len(heard)} of {len(spoken)} words, "
              f"{dictations.differences(spoken, heard)} differ{' LOST' if isLost else ''}", flush=True)
        time.sleep(2)
    application.command("quit")
    return lost > 0


if __name__ == "__main__":
    sys.exit(main())
