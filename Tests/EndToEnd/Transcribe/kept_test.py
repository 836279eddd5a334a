#!/usr/bin/env python3
"""What `murmel transcribe --history` keeps when many run at once, and that no word shows anywhere meanwhile.

usage: kept_test.py MURMEL        MURMEL_TRANSCRIPTS: how many, 8 unless told (the full measure is 200)
"""

import collections
import concurrent.futures
import json
import os
import pathlib
import socket
import subprocess
import sys
import threading
import time

MURMEL = sys.argv.pop(1)
SPEECH = "/usr/share/pocketsphinx/test/data/cards/001.wav"
WORD = "clubs"
TRANSCRIPTS = int(os.environ.get("MURMEL_TRANSCRIPTS", "8"))
PROCESSES = 4


def run(*arguments, text=None):
    return subprocess.run([MURMEL, *arguments], input=text, capture_output=True, text=True, timeout=120)


def watch_arguments(seen, done):
    """Collects the arguments of the processes of this build; other programs of the machine may say what they like."""
    folder = str(pathlib.Path(MURMEL).parent.parent).encode()
    while not done.is_set():
        for line in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
            try:
                arguments = line.read_bytes()
                if arguments.startswith(folder):
                    seen.add(arguments)
            except OSError:
                pass
        time.sleep(0.02)


def with_journal():
    """Goes on where the journal is ours, if this system lets its users have folders of their own."""
    inside = ["unshare", "--map-current-user", "--keep-caps", "--mount", "sh", "-c",
              'mount -t tmpfs none /run && mkdir -p /run/systemd/journal && exec "$@"', "sh"]
    if "MURMEL_OWN_JOURNAL" in os.environ:
        journal = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        journal.bind("/run/systemd/journal/socket")
        lines = []
        threading.Thread(target=lambda: [lines.append(line) for line in iter(lambda: journal.recv(1 << 18), b"")],
                         daemon=True).start()
        return lines
    if subprocess.run([*inside, "true"], capture_output=True).returncode != 0:
        print("No folders of our own here: the journal is not searched.")
        return None
    os.environ["MURMEL_OWN_JOURNAL"] = "yes"
    os.execvp(inside[0], [*inside, sys.executable, __file__, MURMEL])


def holders(folder):
    """Files below the folder that hold the word."""
    return [
        str(path)
        for path in pathlib.Path(folder).rglob("*")
        if path.is_file() and WORD.encode() in path.read_bytes().lower()
    ]


def main():
    session = os.environ["MURMEL_SESSION_DIRECTORY"]
    journal = with_journal()
    arguments, done, failures = set(), threading.Event(), []
    threading.Thread(target=watch_arguments, args=(arguments, done), daemon=True).start()
    bus = subprocess.Popen(["dbus-monitor", "--session"], stdout=subprocess.PIPE)
    said = []
    ended = threading.Event()

    def hear():
        for line in bus.stdout:
            said.append(line)
            if b"murmel.test" in line:
                ended.set()

    threading.Thread(target=hear, daemon=True).start()

    assert run("settings", "set", "historyEnabled", "true").returncode == 0
    with concurrent.futures.ThreadPoolExecutor(PROCESSES) as pool:
        results = list(pool.map(lambda _: run("transcribe", "--history", SPEECH), range(TRANSCRIPTS)))
    for result in results:
        if result.returncode != 0 or WORD not in result.stdout or WORD in result.stderr:
            failures.append(f"transcribe: {result.returncode} {result.stderr}")
    entries = json.loads(run("history", "list", "--json").stdout)
    if len(entries) != TRANSCRIPTS or len({entry["id"] for entry in entries}) != TRANSCRIPTS:
        failures.append(f"{len(entries)} of {TRANSCRIPTS} entries are kept")
    if any(WORD not in entry["text"] for entry in entries):
        failures.append("an entry holds other words")
    run("vocabulary", "add", text=f"klubs = {WORD}\n")
    if WORD not in run("vocabulary", "list").stdout:
        failures.append("the vocabulary was not kept")
    found = holders(session)
    if found:
        failures.append(f"in files: {found}")
    run("history", "clear", "--yes")
    if json.loads(run("history", "list", "--json").stdout):
        failures.append("what was cleared is still there")

    done.set()
    # What was said before stands before this.
    subprocess.run(["dbus-send", "--session", "/", "murmel.test.TheEnd"], check=True)
    if not ended.wait(timeout=30):
        failures.append("the bus was not heard to its end")
    bus.kill()
    if not any(b"org.freedesktop.Secret" in line for line in said):
        failures.append("nothing of the key ring was heard on the bus")
    if any(WORD.encode() in line for line in said):
        failures.append("on the bus")
    if journal is not None and not journal:
        failures.append("nothing was heard by the journal")
    if any(WORD.encode() in line for line in journal or []):
        failures.append("in the journal")
    names = collections.Counter(line.split(b"\0")[0] for line in arguments)
    if names[MURMEL.encode()] < 1:
        failures.append("no process was seen")
    if any(WORD.encode() in line for line in arguments):
        failures.append("in arguments")
    print("\n".join(failures) or f"{TRANSCRIPTS} of {TRANSCRIPTS}, and no word elsewhere")
    sys.exit(1 if failures else 0)


main()
