#!/usr/bin/env python3
"""`murmel listen` on a sound server of its own: phrases, the silence that ends it, and the last words after Ctrl+C.

usage: listen_test.py MURMEL
"""

import json
import pathlib
import resource
import signal
import subprocess
import sys
import unittest

MURMEL = sys.argv.pop(1)
CARDS = pathlib.Path("/usr/share/pocketsphinx/test/data/cards")


def say(name):
    subprocess.run(["paplay", "-d", "mic", CARDS / name], check=True)


def listen(*arguments):
    """Starts to listen, and comes back when the sound server says so."""
    with subprocess.Popen(["pactl", "subscribe"], stdout=subprocess.PIPE, text=True) as events:
        # It is told of every client, itself not included: from then on nothing is missed.
        asking = subprocess.Popen(["sh", "-c", "while pactl info >/dev/null; do :; done"])
        events.stdout.readline()
        asking.kill()
        asking.wait()
        process = subprocess.Popen([MURMEL, "listen", *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, text=True)
        try:
            for line in events.stdout:
                if "'new' on source-output" in line:
                    return process
        finally:
            events.kill()
    raise AssertionError("it does not listen")


class ListenTest(unittest.TestCase):
    def test_silence_after_speech_ends_it(self):
        process = listen("--until-silence", "2s")
        say("005.wav")
        output, complaints = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0, complaints)
        self.assertIn("hearts", output)

    def test_the_last_words_arrive_after_ctrl_c(self):
        process = listen("--json")
        say("001.wav")
        process.send_signal(signal.SIGINT)
        output, complaints = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 0, complaints)
        self.assertIn("clubs", json.loads(output)["text"])

    def test_the_last_words_arrive_when_memory_runs_out(self):
        process = listen()
        say("001.wav")
        pages = int(pathlib.Path(f"/proc/{process.pid}/statm").read_text().split()[0])
        resource.prlimit(process.pid, resource.RLIMIT_AS, (pages * resource.getpagesize() + (10 << 20),) * 2)
        output, complaints = process.communicate(timeout=60)
        self.assertEqual((process.returncode, "Memory is running out" in complaints), (0, True), complaints)
        self.assertIn("clubs", output)


if __name__ == "__main__":
    unittest.main(verbosity=2)
