#!/usr/bin/env python3
"""`murmel update` in a real installation below the home folder, against a server that does everything wrong.

usage: updater_test.py BUILD RELEASE-FEED MODEL-HOST     (in a private session with a display)

After every attempt the installed version must still start, by its own self-test, unless none of its files has changed.
"""

import base64
import hashlib
import json
import operator
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tarfile
import time
import unittest

BUILD, RELEASE_FEED, MODEL_HOST = (pathlib.Path(argument) for argument in sys.argv[1:4])
HOME = pathlib.Path(os.environ["HOME"])
ROOT = HOME / ".local/opt/murmel"
CURRENT = ROOT / "current"
WORK = pathlib.Path(os.environ["MURMEL_SESSION_DIRECTORY"]) / "update"
MEMORY = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "MRM/updates.json"
ARCHITECTURE = os.uname().machine
NOW = int(time.time())


def information(tree):
    return json.loads((tree / "lib/murmel/Info.json").read_text())


def starts(tree):
    return subprocess.run([tree / "bin/murmel", "--mrm-release-launch-smoke"], capture_output=True,
                          timeout=60).returncode == 0


def link_or_copy(source, target):
    """The session's folder may be on another disk."""
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)


def make_tree(path, build, program=None):
    """The build tree as an installation of that build number."""
    shutil.rmtree(path, ignore_errors=True)
    (path / "bin").mkdir(parents=True)
    shutil.copytree(BUILD / "lib/murmel/Workers", path / "lib/murmel/Workers", symlinks=True, copy_function=link_or_copy,
                    ignore=shutil.ignore_patterns("mrm-speech-engines*", "mrm-parakeet*"))  # large, and not asked for here
    told = information(BUILD)
    told["CFBundleVersion"] = str(build)
    (path / "lib/murmel/Info.json").write_text(json.dumps(told))
    if program is None:
        link_or_copy(BUILD / "bin/murmel", path / "bin/murmel")
    else:
        (path / "bin/murmel").write_text(program)
        (path / "bin/murmel").chmod(0o755)


def pack(tree, archive, change=None):
    with tarfile.open(archive, "w") as tar:
        for part in ("bin", "lib"):
            tar.add(tree / part, part)
        if change:
            change(tar)


class Host:
    """The release's server, with a key of its own."""

    def __init__(self):
        self.folder = WORK / "served"
        self.folder.mkdir(parents=True)
        self.key, self.other_key = WORK / "key.pem", WORK / "other.pem"
        for key in (self.key, self.other_key):
            subprocess.run(["openssl", "genpkey", "-algorithm", "ed25519", "-out", key], check=True)
        self.fingerprint = subprocess.run([RELEASE_FEED, "--fingerprint", self.key], check=True, capture_output=True,
                                          text=True).stdout.strip()
        self.process = subprocess.Popen([MODEL_HOST, self.folder], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)
        self.port, self.certificate = self.process.stdout.readline().split()
        self.scenarios = 0

    def address(self, name, actions):
        self.scenarios += 1
        return f"https://localhost:{self.port}/{self.scenarios}:{actions}/{name}"

    def publish(self, archive, *, archive_actions="ok", key=None, top=None, **release):
        entry = {"file": archive.name, "url": self.address(archive.name, archive_actions), "version": "0.1.0",
                 "build": 100, "channel": "developer-id", "edition": "development", "architecture": ARCHITECTURE,
                 "minimumSystem": "2.30", "notes": "What is new."} | release
        releases = self.folder / "releases.json"
        releases.write_text(json.dumps({"serial": 10, "days": 1, "releases": [entry]} | (top or {})))
        made = subprocess.run([RELEASE_FEED, key or self.key, releases], check=True, capture_output=True)
        (self.folder / "feed").write_bytes(made.stdout)

    def environment(self, feed_actions):
        words = ["--development-feed", self.address("feed", feed_actions), "--development-key", self.fingerprint,
                 "--development-certificates", self.certificate, "--development-time-scale", "0.05"]
        return os.environ | {"MURMEL_UPDATER_ARGUMENTS": " ".join(words)}


class UpdaterTest(unittest.TestCase):
    started = None

    @classmethod
    def setUpClass(cls):
        WORK.mkdir(parents=True)
        cls.host = Host()
        make_tree(WORK / "new", 100)
        cls.archive = cls.host.folder / "new.tar"
        pack(WORK / "new", cls.archive)

    @classmethod
    def tearDownClass(cls):
        with cls.host.process:
            cls.host.process.stdin.close()

    def setUp(self):
        shutil.rmtree(ROOT, ignore_errors=True)
        MEMORY.unlink(missing_ok=True)
        make_tree(CURRENT, 50)

    def update(self, what="install", feed="ok", wrapper=(), **options):
        return subprocess.run([*wrapper, CURRENT / "bin/murmel", "update", what], capture_output=True, text=True,
                              timeout=120, env=self.host.environment(feed), **options)

    def assert_installed(self, build):
        self.assertEqual(information(CURRENT)["CFBundleVersion"], str(build))
        facts = operator.attrgetter("st_ino", "st_size", "st_mode", "st_mtime_ns")
        files = {file: facts(file.lstat()) for file in [CURRENT, *CURRENT.rglob("*")]}
        if files != self.started:
            self.assertTrue(starts(CURRENT), "the installed version does not start")
            self.started = files

    def refused(self, name, expected, **options):
        with self.subTest(name):
            done = self.update(**options)
            self.assertEqual(done.returncode, 1, done.stdout + done.stderr)
            self.assertIn(expected, done.stderr)
            self.assert_installed(50)

    def test_a_new_version_replaces_the_old_one_and_keeps_its_path(self):
        self.host.publish(self.archive)
        found = self.update("check")
        self.assertEqual(found.returncode, 0, found.stderr)
        self.assertIn("Version 0.1.0 (build 100) is available", found.stdout)
        self.assertIn("What is new.", found.stdout)
        self.assertEqual(information(CURRENT)["CFBundleVersion"], "50")

        done = self.update()
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assert_installed(100)
        # A desktop compares this with its entry's line.
        running = subprocess.run([CURRENT / "bin/murmel", "--version"], capture_output=True, text=True)
        self.assertIn("(100)", running.stdout)
        self.assertEqual(information(ROOT / "previous")["CFBundleVersion"], "50")
        self.assertFalse((ROOT / ".new").exists())
        self.assertIn("is up to date", self.update("check").stdout)

    def test_a_list_that_cannot_be_believed_changes_nothing(self):
        publish = lambda **options: self.host.publish(self.archive, **options)
        publish(key=self.host.other_key)
        self.refused("signed by somebody else", "not signed by the makers")
        publish()
        feed = self.host.folder / "feed"
        good = feed.read_bytes()
        feed.write_bytes(good.replace(b'"build": 100', b'"build": 101'))
        self.refused("changed after it was signed", "not signed by the makers")
        feed.write_bytes(good[:len(good) // 2])
        self.refused("cut", "not signed by the makers")
        feed.write_bytes(good[:40])
        self.refused("cut in its first lines", "cannot be read")
        feed.write_bytes(b"<html>Log in to this network</html>")
        self.refused("a page of a hotel", "cannot be read")
        feed.write_bytes(good + b" " * (1 << 20))
        self.refused("endless", "too long")
        feed.write_bytes(good)
        self.refused("silent", "cannot be reached", feed="stall@10")
        self.refused("slow without end", "cannot be reached", feed="slow@1")
        self.refused("ended early", "cannot be reached", feed="cut@10")
        self.refused("not there", "has no list", feed="status@404")
        self.refused("led to a connection without encryption", "cannot be reached", feed="http")
        self.refused("led round in circles", "cannot be reached", feed="redirect")
        publish(top={"days": 0})
        self.refused("expired", "out of date")
        publish(top={"releases": [{"version": "1"}]})
        self.refused("signed, but incomplete", "cannot be read")
        publish(url="http://localhost/new.tar")
        self.refused("a version without encryption", "cannot be read")
        publish(size=5 << 30)
        feed.write_bytes(subprocess.run([RELEASE_FEED, self.host.key, self.with_size(5 << 30)], check=True,
                                        capture_output=True).stdout)
        self.refused("a version of any size", "cannot be read")

    def with_size(self, size):
        path = self.host.folder / "releases.json"
        releases = json.loads(path.read_text())
        releases["releases"][0].pop("file")
        releases["releases"][0] |= {"size": size, "sha256": "0" * 64}
        path.write_text(json.dumps(releases))
        return path

    def test_a_list_never_becomes_older(self):
        self.host.publish(self.archive, top={"serial": 12})
        self.assertEqual(self.update("check").returncode, 0)
        self.host.publish(self.archive, top={"serial": 11})
        self.refused("an old list again", "older than one that was seen")

    def test_a_version_that_is_not_for_here_is_not_offered(self):
        for name, release in {"older": {"build": 49}, "the same": {"build": 50}, "another edition": {"edition": "lite"},
                              "another machine": {"architecture": "z80"}, "a newer system": {"minimumSystem": "9.0"},
                              "the store's": {"channel": "app-store"}}.items():
            with self.subTest(name):
                self.host.publish(self.archive, **release)
                self.assertIn("is up to date", self.update().stdout)

    def test_an_archive_that_is_not_the_release_changes_nothing(self):
        publish = lambda actions: self.host.publish(self.archive, archive_actions=actions)
        publish("bytes")
        self.refused("other bytes", "")
        publish("status@404")
        self.refused("not there", "")
        publish("length@1000")
        self.refused("too short", "")
        publish("unsized@1000000")
        self.refused("longer than it is", "")
        publish("http")
        self.refused("led to a connection without encryption", "")
        for name, change in {
            "out of its folder": lambda tar: self.add(tar, "../../../escaped"),
            "from the root": lambda tar: self.add(tar, str(HOME / "escaped")),
            "through a link": self.add_through_link,
            "a link that leads out": lambda tar: self.add_link(tar, "lib/out", "../../../.."),
            "a device": lambda tar: self.add(tar, "lib/device", type=tarfile.CHRTYPE),
            "a second name of a file": lambda tar: self.add_hard_link(tar),
        }.items():
            evil = self.host.folder / "evil.tar"
            pack(WORK / "new", evil, change)
            self.host.publish(evil)
            self.refused("a file " + name, "")
            self.assertFalse(any(HOME.rglob("escaped")))
            self.assertFalse((ROOT / ".new").exists())
        broken = self.host.folder / "broken.tar"
        broken.write_bytes(os.urandom(100_000))
        self.host.publish(broken)
        self.refused("signed, but no archive", "")
        other = self.host.folder / "other.tar"
        make_tree(WORK / "other", 99)
        pack(WORK / "other", other)
        self.host.publish(other)
        self.refused("another version than it says", "not what the list")

    @staticmethod
    def add(tar, name, type=tarfile.REGTYPE):
        entry = tarfile.TarInfo(name)
        entry.type = type
        tar.addfile(entry)

    @staticmethod
    def add_link(tar, name, target):
        entry = tarfile.TarInfo(name)
        entry.type, entry.linkname = tarfile.SYMTYPE, target
        tar.addfile(entry)

    def add_through_link(self, tar):
        self.add_link(tar, "lib/inside", "murmel")
        self.add(tar, "lib/inside/../../../../escaped")

    @staticmethod
    def add_hard_link(tar):
        entry = tarfile.TarInfo("lib/twice")
        entry.type, entry.linkname = tarfile.LNKTYPE, "/etc/passwd"
        tar.addfile(entry)

    def test_a_version_that_does_not_start_does_not_stay(self):
        for name, program in {
            "at all": "#!/bin/sh\nexit 1\n",
            "in time to be told": "#!/nowhere\n",
            "in its place": "#!/bin/sh\ncase $0 in */.new/*) exit 0;; *) exit 1;; esac\n",
        }.items():
            make_tree(WORK / "bad", 100, program)
            bad = self.host.folder / "bad.tar"
            pack(WORK / "bad", bad)
            self.host.publish(bad)
            self.refused("does not start " + name, "does not start on this computer")

    def test_a_download_goes_on_where_it_was_cut(self):
        self.host.publish(self.archive, archive_actions="cut@1000000,ok")
        self.assertEqual(self.update().returncode, 0)
        self.assert_installed(100)

    def test_a_file_system_without_locks_is_good_enough(self):
        self.host.publish(self.archive)
        without = ["strace", "-f", "-o", "/dev/null", "-e", "inject=flock:error=ENOLCK"]
        for task in ("download", "unpack", "exchange"):
            self.assertIn('"done"', self.step(task, without))
        self.assert_installed(100)

    def test_killed_at_every_step_one_version_stays(self):
        self.host.publish(self.archive)
        steps = [("unpack", "mkdirat:signal=KILL:when=1"), ("unpack", "fchdir:signal=KILL:when=1"),
                 ("unpack", "openat:signal=KILL:when=30"), ("unpack", "syncfs:signal=KILL:when=1"),
                 ("exchange", "renameat2:signal=KILL:when=1"), ("exchange", "renameat2:signal=KILL:when=2"),
                 ("exchange", "fsync:signal=KILL:when=1")]
        for task, fault in steps:
            with self.subTest(f"{task} {fault}"):
                self.setUp()
                self.prepare(task)
                ended = self.step(task, ["strace", "-f", "-o", "/dev/null", "-e", f"inject={fault}"])
                self.assertNotIn('"done"', ended)
                self.assertTrue(starts(CURRENT))
                # What was interrupted can be done again, from the start.
                done = self.update()
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assert_installed(100)

    def step(self, task, wrapper=()):
        """One run of the updater, as the application makes it."""
        environment = self.host.environment("ok")
        feed = (self.host.folder / "feed").read_bytes()
        order = {"feed": base64.b64encode(feed).decode(), "serial": 0,
                 "sha256": hashlib.sha256(self.archive.read_bytes()).hexdigest()}
        command = [*wrapper, CURRENT / "lib/murmel/Workers/mrm-updater", task, "--root", ROOT,
                   *environment["MURMEL_UPDATER_ARGUMENTS"].split()]
        # Not confined, for it is not started by the launcher.
        with subprocess.Popen(command, env=os.environ | {"MURMEL_UNCONFINED": "1"}, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as process:
            process.stdin.write(json.dumps(order) + "\n")
            process.stdin.flush()  # and kept open: its end means that nobody wants the update any more
            return process.stdout.read()

    def prepare(self, task):
        for before in ("download", "unpack")[:1 if task == "unpack" else 2]:
            self.assertIn('"done"', self.step(before))

    def test_an_archive_that_is_exchanged_after_it_arrived_is_not_opened(self):
        self.host.publish(self.archive)
        self.prepare("unpack")
        arrived, = (ROOT / ".arrivals/Release").iterdir()
        evil = WORK / "evil.tar"
        pack(WORK / "new", evil, lambda tar: self.add(tar, "lib/murmel/extra"))
        arrived.write_bytes(evil.read_bytes())
        self.assertIn("did not arrive as it was released", self.step("unpack"))
        self.prepare("unpack")
        arrived.unlink()
        arrived.symlink_to(evil)
        self.assertNotIn('"done"', self.step("unpack"))
        self.assert_installed(50)

    def test_a_disk_that_takes_no_more_leaves_the_old_version(self):
        self.host.publish(self.archive)
        for name, wrapper in {
            "while it is written": ["bash", "-c", 'ulimit -f 1000; exec "$@"', "-"],
            "at the end": ["strace", "-f", "-o", "/dev/null", "-e", "inject=syncfs:error=ENOSPC"],
        }.items():
            with self.subTest(name):
                self.setUp()
                self.prepare("unpack")
                self.assertIn('"failed"', self.step("unpack", wrapper))
                self.assertFalse((ROOT / ".new").exists())
                self.assert_installed(50)

    def test_two_at_once_do_not_meet(self):
        self.host.publish(self.archive, archive_actions="slow@20000")
        first = subprocess.Popen([CURRENT / "bin/murmel", "update", "install"], stdout=subprocess.DEVNULL,
                                 env=self.host.environment("ok"))
        try:
            while not (ROOT / ".arrivals").exists() and first.poll() is None:
                time.sleep(0.02)
            self.refused("a second one", "is running")
        finally:
            first.send_signal(signal.SIGINT)
            first.wait(timeout=60)
        self.assertEqual(first.returncode, 1)
        self.assert_installed(50)

    def test_nobody_is_asked_who_was_not_told_to(self):
        # A build without a release's key has nobody to ask.
        done = subprocess.run([CURRENT / "bin/murmel", "update", "check"], capture_output=True, text=True, timeout=60)
        self.assertEqual(done.returncode, 1)
        self.assertIn("belongs to no release", done.stderr)
        self.assertFalse(MEMORY.exists())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
