#!/usr/bin/env python3
"""Whole dictations on a Wayland desktop: the shortcut is held on the user's keyboard, a recording is played into the
microphone, and the words arrive in real applications, once, with the clipboard as it was.

usage: dictation_test.py BUILD [--count N] [--programs NAME,…] [--held]
Runs in `private-session --sway|--kwin|--gnome --xwayland --pulse`. A program that does not run is a failure."""
import argparse
import http.server
import json
import os
import pathlib
import signal
import statistics
import subprocess
import sys
import threading
import time

HERE = pathlib.Path(__file__).parent
SESSION = pathlib.Path(os.environ["MURMEL_SESSION_DIRECTORY"])
CONTROL, SPACE, SHIFT = 29, 57, 42
RECORDING = "/usr/share/pocketsphinx/test/data/cards/001.wav"
GNOME = os.environ["XDG_CURRENT_DESKTOP"] == "GNOME"
KWIN = os.environ["XDG_CURRENT_DESKTOP"] == "KDE"
PAGE = b"""<!doctype html><meta charset=utf-8><textarea autofocus style="width:90%;height:300px"></textarea><script>
const t=document.querySelector('textarea');t.focus();
t.addEventListener('input',()=>fetch('/',{method:'POST',body:t.value}));</script>"""


def until(condition, seconds=20):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.01)
    return False


def succeeds(*command):
    return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def keys(*lines):
    with open(os.environ["MURMEL_KEYBOARD"], "w") as keyboard:
        keyboard.write("\n".join(lines) + "\n")


class Page:
    """A page with a text area, which tells what stands in it."""

    def __init__(self, file):
        class Handler(http.server.BaseHTTPRequestHandler):
            def answer(self, body):
                self.send_response(200)
                self.send_header("Content-Type", "text/html")
                self.end_headers()
                self.wfile.write(body)

            def do_GET(self):
                self.answer(PAGE)

            def do_POST(self):
                file.write_bytes(self.rfile.read(int(self.headers["Content-Length"])))
                self.answer(b"")

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.address = f"http://127.0.0.1:{self.server.server_port}/"


def program(name, build, file):
    """Command and environment of a program that writes what it is given to the file."""
    qt = [f"{build}/tests/qt-editor", str(file)]
    return {
        "gtk3": lambda: (["python3", str(HERE / "editor.py"), "3", str(file)], {"GDK_BACKEND": "wayland"}),
        "gtk4": lambda: (["python3", str(HERE / "editor.py"), "4", str(file)],
                         {"GDK_BACKEND": "wayland", "GSK_RENDERER": "cairo"}),
        "qt6": lambda: (qt, {"QT_QPA_PLATFORM": "wayland"}),
        # KWin gives a screen without a size, which foot cannot be shown on.
        "terminal": lambda: ((["xfce4-terminal", "--disable-server", "-x"] if KWIN else ["foot"]) +
                             ["sh", "-c", f"stty raw -echo; exec cat >'{file}'"], {"GDK_BACKEND": "wayland"}),
        "x11": lambda: (["python3", str(HERE / "editor.py"), "3", str(file)], {"GDK_BACKEND": "x11"}),
        "chromium": lambda: (["chromium", "--no-sandbox", "--ozone-platform=wayland", "--disable-gpu", "--no-first-run",
                              "--password-store=basic", f"--user-data-dir={SESSION}/chromium",
                              f"--app={Page(file).address}"], {}),
    }[name]()


class Clipboard:
    """What the user has copied, as the desktop's own program sees it."""

    def __init__(self):
        self.bytes = b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 4000
        self.copy = ["xclip", "-selection", "clipboard", "-t", "image/png"] if GNOME else ["wl-copy", "-t", "image/png"]
        self.paste = [*self.copy, "-o"] if GNOME else ["wl-paste", "-n", "-t", "image/png"]
        subprocess.run(self.copy, input=self.bytes, stdout=subprocess.DEVNULL, check=True)

    def is_as_it_was(self):
        found = subprocess.run(self.paste, capture_output=True, timeout=10)
        return found.stdout == self.bytes


def has_key_ring():
    """Which begins to exist some time after its service does; without it the history stays in memory."""
    answer = subprocess.run(["gdbus", "call", "--session", "-d", "org.freedesktop.secrets", "-o", "/org/freedesktop/secrets", "-m",
                             "org.freedesktop.Secret.Service.ReadAlias", "default"], capture_output=True, text=True).stdout
    return "/collection/" in answer


class Murmel:
    def __init__(self, build):
        assert until(has_key_ring, 60), "there is no key ring"
        self.listed, self.complaint = 0, ""
        self.binary = f"{build}/bin/murmel"
        settings = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "MRM" / "defaults.json"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text(json.dumps({"onboarding.completed": True, "settings.shortcut": "controlSpace",
                                        "settings.historyEnabled": True}))
        self.log = SESSION / "murmel.log"
        self.process = subprocess.Popen([self.binary], stdout=self.log.open("w"), stderr=subprocess.STDOUT)
        assert until(lambda: succeeds(self.binary, "status"), 120), "Murmel does not start"

    def is_listening(self):
        streams = subprocess.run(["pactl", "list", "short", "source-outputs"], capture_output=True, text=True).stdout
        return len(streams.splitlines()) > 1

    def texts(self):
        """What was dictated, the newest first."""
        listed = []

        def is_whole():
            # A key ring that is busy does not give the key in time: then there is nothing to be seen for once.
            found = subprocess.run([self.binary, "history", "list", "--json"], capture_output=True, text=True)
            listed[:] = [entry["text"] for entry in json.loads(found.stdout or "[]")]
            self.complaint = found.stderr.strip()
            return len(listed) >= self.listed

        until(is_whole, 30)
        self.listed = len(listed)
        return listed

    def quit(self):
        subprocess.run([self.binary, "quit"], check=False)
        assert self.process.wait(60) == 0, self.log.read_text()


def dictate(murmel, read, before, holds):
    """What was written, and the seconds from the press to the open microphone and from the release to the text; or what
    went wrong. The text is what the history has: how well it was recognised is no matter here."""
    known = murmel.texts()
    pressed = time.monotonic()
    keys(f"down {CONTROL}", f"down {SPACE}")
    if not until(murmel.is_listening, 60):
        return None, "the microphone was not opened"
    listening = time.monotonic() - pressed
    subprocess.run(["paplay", "--latency-msec=100", "-d", "mic", RECORDING], check=True)
    released = time.monotonic()
    keys(f"up {SPACE}", f"up {CONTROL}", *([f"down {SHIFT}"] if holds else []))
    if holds and GNOME:
        # Nobody can let go of it in the user's stead there: the paste waits.
        time.sleep(1)
        keys(f"up {SHIFT}")
    came = until(lambda: read() != before, 60)
    took = time.monotonic() - released
    entered = until(lambda: len(murmel.texts()) > len(known), 60)
    if holds:
        keys(f"up {SHIFT}")
    if not entered:
        return None, f"the history has nothing new ({murmel.complaint}), and {read()!r} stands there"
    text = murmel.texts()[0]
    if not came or not until(lambda: read() == before + text, 20):
        return None, f"not {before + text!r} stands there, but {read()!r}"
    return (text, listening, took), None


def run(name, murmel, build, count, holds):
    clipboard = Clipboard()
    file = SESSION / f"{name}.txt"
    command, environment = program(name, build, file)
    log = (SESSION / f"{name}.log").open("w")
    process = subprocess.Popen(command, env={**os.environ, **environment}, stdout=log, stderr=log)
    time.sleep(6 if name == "chromium" else 2)  # until it has a window and the keyboard: nothing tells

    def read():
        return file.read_text(errors="replace") if file.exists() else ""

    good, times, faults, before = 0, [], [], ""
    for number in range(1, count + 1):
        done, fault = dictate(murmel, read, before, holds and number % 2 == 0)
        before = read()
        if not fault and not until(clipboard.is_as_it_was, 30):
            fault = "the clipboard is another"
        if process.poll() is not None:
            fault = f"the program has ended: {(SESSION / f'{name}.log').read_text()[-400:]}"
        if fault:
            faults.append(f"{number}: {fault}")
        else:
            good += 1
            times.append(done[1:])
        if len(faults) > 3:
            break
        time.sleep(0.2)
    process.send_signal(signal.SIGTERM)
    process.wait()
    time.sleep(0.5)
    middle = [f"{statistics.median(column) * 1000:.0f}" for column in zip(*times)] or ["-", "-"]
    print(f"{name:10} {good:3} of {count:3}   press to listening {middle[0]} ms, release to text {middle[1]} ms", flush=True)
    for fault in faults:
        print(f"  {fault}", flush=True)
    return not faults


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--count", type=int, default=2)
    parser.add_argument("--programs", default="gtk3,qt6,terminal,x11")
    parser.add_argument("--held", action="store_true", help="hold Shift at every second paste")
    options = parser.parse_args()
    murmel = Murmel(options.build)
    time.sleep(1.5)
    results = [run(name, murmel, options.build, options.count, options.held)
               for name in options.programs.split(",")]
    murmel.quit()
    if not all(results):
        print("".join(line[:160] + "\n" for line in murmel.log.read_text().splitlines() if "dictation_stop" not in line)[-3000:])
    sys.exit(0 if all(results) else 1)


main()
