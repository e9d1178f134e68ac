#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Follows a recording into an object store that is gone in the middle: scripts/scaling/follow.py with
rclone, and a store with S3 that is killed or no longer answers.
"""

import contextlib
import io
import json
import os
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import unittest.mock
import urllib.error
import urllib.request
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

from scale_test import Recording  # noqa: E402  (the paths come first)
from scaling import events, follow, keys, live  # noqa: E402

BUCKET = "recordings"
MANY = 60  # frames, so that some have been copied and some have not


class LostStoreTest(unittest.TestCase):
    """One store, which each test leaves running."""

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        # Settings of the user for other stores, and for the way there, do not apply.
        plain = {name: value for name, value in os.environ.items()
                 if not name.startswith("AWS_") and not name.lower().endswith("_proxy")}
        cls.enterClassContext(unittest.mock.patch.dict(os.environ, plain, clear=True))
        cls.port = 0
        cls.start_store()
        cls.addClassCleanup(lambda: cls.kill_store())  # the one that runs then
        os.environ.update(keys.rclone(f"http://127.0.0.1:{cls.port}"))
        subprocess.run(["rclone", "mkdir", f"store:{BUCKET}"], check=True)

    @classmethod
    def start_store(cls):
        """Starts the store, with what it had before."""
        cls.store = subprocess.Popen(
            live.python("objectstore", "127.0.0.1", str(cls.port), str(cls.folder)),
            env={**os.environ, "PYTHONPATH": str(ROOT / "scripts")}, stdout=subprocess.PIPE)
        cls.port = events.Events("store", cls.store).wait("ready")["port"]

    @classmethod
    def kill_store(cls):
        """Kills it."""
        cls.store.kill()
        cls.store.communicate()

    def setUp(self):
        self.enterContext(contextlib.redirect_stdout(io.StringIO()))
        self.enterContext(unittest.mock.patch.object(follow, "PAUSES", (0, 0)))
        here = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.name = f"{self.id().rpartition('.')[2]}.ome.zarr"
        self.recording = Recording(here / self.name)
        self.follower = follow.Follower(self.recording.path, f"store:{BUCKET}/{self.name}/")
        self.follower.copy()
        self.assertEqual(self.counted(), 1)

    def objects(self):
        """How many objects the store has on its disk."""
        return sum(1 for _ in (self.folder / "disk/objects").rglob("*.data"))

    def get(self, name):
        """An object of the copy as any reader gets it; None if there is none."""
        try:
            with urllib.request.urlopen(
                    f"http://127.0.0.1:{self.port}{keys.PUBLIC}/{BUCKET}/{self.name}/{name}") as answer:
                return answer.read().decode()
        except urllib.error.HTTPError as error:
            self.assertEqual(error.code, 404)
            return None

    def counted(self):
        """How many frames the copy counts, all of which must be there."""
        frames = json.loads(self.get("0/0/.zarray"))["shape"][0]
        for frame in range(frames):
            self.assertEqual(self.get(f"0/0/{frame}/0/0/0"), f"chunk {frame}")
        return frames

    def copy_fails(self, reason):
        """Copies, which fails with the name of the store and this reason."""
        with self.assertRaisesRegex(follow.FollowError, f"^rclone to store:{BUCKET}/{self.name}/ failed "
                                                        rf"\d times: .*{reason}"):
            self.follower.copy()

    def test_one_that_is_killed_while_chunks_are_copied_counts_none_that_it_does_not_have(self):
        for _ in range(MANY):
            self.recording.add()
        before = self.objects()

        def kill_in_the_middle():
            while self.objects() < before + 5 and self.store.poll() is None:
                time.sleep(0.001)
            self.kill_store()
        killer = threading.Thread(target=kill_in_the_middle)
        killer.start()
        self.copy_fails("connection refused")
        killer.join()
        self.assertIn(self.objects() - before, range(5, MANY))
        self.start_store()
        self.assertEqual(self.counted(), 1)
        self.follower.copy()
        self.assertEqual(self.counted(), 1 + MANY)

    def test_one_that_is_killed_before_the_count_arrives_has_a_chunk_more(self):
        self.recording.add()
        copy = follow.rclone

        def die_after_the_chunks(*words, text=""):
            if not text:
                self.kill_store()
            copy(*words, text=text)
        with unittest.mock.patch.object(follow, "rclone", die_after_the_chunks):
            self.copy_fails("connection refused")
        self.start_store()
        self.assertEqual(self.counted(), 1)
        self.assertEqual(self.get("0/0/1/0/0/0"), "chunk 1")
        self.follower.copy()
        self.assertEqual(self.counted(), 2)

    def test_one_that_is_started_again_in_time_is_used_again(self):
        self.recording.add()
        self.kill_store()
        reasons = []

        def start_again(kind, **event):
            if kind == "failed":
                reasons.append(event["text"])
                self.start_store()
        with unittest.mock.patch.object(follow, "emit", start_again):
            self.follower.copy()
        self.assertRegex("".join(reasons), "connection refused")
        self.assertEqual(len(reasons), 1)
        self.assertEqual(self.counted(), 2)

    def test_one_that_no_longer_answers_is_named(self):
        self.recording.add()
        self.enterContext(unittest.mock.patch.object(follow, "PAUSES", ()))
        # Of the 20 seconds that rclone otherwise waits.
        self.enterContext(unittest.mock.patch.object(
            follow, "RCLONE", ["1s" if word == "20s" else word for word in follow.RCLONE]))
        self.store.send_signal(signal.SIGSTOP)
        try:
            # On a busy machine, rclone gives up while it writes, and then names what it has closed itself.
            self.copy_fails("(timeout|closed network connection)")
        finally:
            self.store.send_signal(signal.SIGCONT)
        self.assertEqual(self.counted(), 1)
        self.follower.copy()
        self.assertEqual(self.counted(), 2)


if __name__ == "__main__":
    unittest.main()
