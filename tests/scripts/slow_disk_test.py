#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Records as OME-Zarr with pcdctl on a disk that is slower than the camera.

Usage: slow_disk_test.py PCDCTL LIBRARY: the library is tests/support/StuckDisk.cpp.
"""

import json
import os
import subprocess
import sys
import time
import unittest
from pathlib import Path

import zarr_test

LIBRARY = None
MEMORY = 256 << 20  # bytes that pcdctl takes for all that there is
RESERVE = MEMORY // 4  # for frames that wait, as docs/recording.md has it
WIDTH, HEIGHT = 2000, 1000
FRAME = 3 * WIDTH * HEIGHT
STUCK_AT = 3  # the frame, counted from 0, after which the disk takes nothing
WANTED = 1000  # frames
OTHERS = 10 * FRAME  # besides the reserve: frames in the camera, the SDK and the writer, and chance


def peak_memory(pid):
    """The peak of a program's resident memory, in bytes; 0 once it has ended."""
    status = Path(f"/proc/{pid}/status").read_text(encoding="utf-8")
    sizes = [line.split()[1] for line in status.splitlines() if line.startswith("VmHWM:")]
    return 1024 * int(sizes[0]) if sizes else 0


class SlowDiskTest(zarr_test.ZarrTest):
    """A disk that stops, and goes on when the recording has given up."""

    def setUp(self):
        super().setUp()
        self.stuck, self.journal = self.folder / "stuck", self.folder / "journal"

    def start_on_stuck_disk(self):
        """Starts a recording whose disk takes three frames."""
        self.stuck.touch()
        command = self.command("-n", str(WANTED), output=self.path,
                               resolutions=[{"width": WIDTH, "height": HEIGHT, "fps": 60}])
        program = self.enterContext(subprocess.Popen(
            command, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env={**os.environ, "LD_PRELOAD": str(LIBRARY), "PCD_TEST_MEMORY": str(MEMORY),
                 "PCD_TEST_STUCK_AT": f"/0/0/{STUCK_AT}", "PCD_TEST_STUCK_WHILE": str(self.stuck),
                 "TOUPCAM_SIM_JOURNAL": str(self.journal)}))
        self.addCleanup(program.kill)
        return program

    def wait_for_given_up(self, program, most):
        """Waits until the recording takes no more frames. Fails if it needs more memory meanwhile."""
        end = time.monotonic() + zarr_test.SECONDS
        while "Toupcam_Stop(" not in self.journal.read_text(encoding="utf-8"):
            self.assertIsNone(program.poll(), "ended early")
            self.assertLess(peak_memory(program.pid), most)
            self.assertLess(time.monotonic(), end)
            time.sleep(0.02)

    def test_frames_are_lost_by_name_and_what_was_recorded_can_be_read(self):
        program = self.start_on_stuck_disk()
        self.wait_for_frames(program, STUCK_AT)
        before = peak_memory(program.pid)
        self.wait_for_given_up(program, before + RESERVE + OTHERS)
        self.assertLess(peak_memory(program.pid), before + RESERVE + OTHERS)
        self.stuck.unlink()
        output, errors = program.communicate(timeout=zarr_test.SECONDS)
        self.assertEqual(program.returncode, 1, errors)
        reason = f"the disk is slower than the camera: {RESERVE / 1e6:.1f} MB are waiting to be written"
        self.assertIn(f"pcdctl: {reason}\n", errors)
        report = json.loads(output)
        tally, ledger = report["recording"], report["ledger"]
        # One more is taken if nothing waits.
        self.assertIn(tally["written"], range(STUCK_AT + 1, STUCK_AT + 2 + RESERVE // FRAME))
        self.assertEqual(tally["refused"], 1)
        self.assertEqual(tally["wanted"], WANTED)
        self.assertEqual(sum(tally[key] for key in ("written", "failed", "refused", "not_taken")), WANTED)
        self.assertEqual(ledger["failed_in_writer"], 1)
        outcomes = [ledger[key] for key in ledger if key not in ("produced", "snapshots", "balanced")]
        self.assertEqual(sum(outcomes), ledger["produced"], ledger)
        self.assertGreaterEqual(ledger["delivered"], tally["written"])
        recording = zarr_test.Recording(self, self.path)
        self.assertEqual(self.whole_frames(), tally["written"])
        self.assertEqual(len(recording.times()), tally["written"])
        self.assertEqual(recording.note("Complete").split(",")[0], f"no: {reason}")
        self.assertEqual(recording.parts(), [])


if __name__ == "__main__":
    zarr_test.PCDCTL, LIBRARY = (Path(path).resolve() for path in sys.argv[1:3])
    unittest.main(argv=sys.argv[:1])
