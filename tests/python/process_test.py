"""The module in a process: how it ends, forks, and what it prints."""

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from support import UNTIL, run_python, scene

FRAME = 322 * 240 * 3  # bytes
START = f"""
import gc, os, signal, sys, threading, time
import pcd
simulator = pcd.simulate({scene()!r})
"""


class Process(unittest.TestCase):
    def run_script(self, code, **options):
        """Runs a script, and returns what it printed; fails if it did not end by itself."""
        ended = run_python(START + code, **options)
        self.assertEqual((0, ""), (ended.returncode, ended.stderr), ended.stdout)
        return ended.stdout

    def test_a_script_may_end_without_closing_anything(self):
        for rest in ("", "sys.exit()", "del camera, stream; gc.collect()", "stream.close()",
                     "frames = [frame, frame.array]; del frame"):
            with self.subTest(rest):
                self.run_script("camera = pcd.open()\nstream = camera.stream()\n"
                                "frame = next(stream)\npcd.on_unplug(print)\n" + rest)

    def test_a_script_may_end_by_an_exception(self):
        ended = run_python(START + "camera = pcd.open()\nfor frame in camera.stream():\n    1 / 0\n")
        self.assertEqual(1, ended.returncode)
        self.assertTrue(ended.stderr.endswith("ZeroDivisionError: division by zero\n"))

    def test_another_thread_may_drop_everything(self):
        self.run_script("held = [pcd.open()]\nheld += [held[0].stream()]\nnext(held[1])\n"
                        "thread = threading.Thread(target=held.clear)\n"
                        "thread.start()\nthread.join()\n")

    def test_a_thread_of_its_own_may_have_the_cameras(self):
        ended = run_python(
            "import pcd, threading\n"
            "def use():\n"
            "    pcd.simulate()\n"
            "    global camera, stream\n"
            "    camera = pcd.open(1)\n"
            "    stream = camera.stream()\n"
            "    print(next(stream).sequence)\n"
            "    print(next(stream).sequence)\n"
            "thread = threading.Thread(target=use)\n"
            "thread.start()\nthread.join()\n"
            "try: pcd.cameras()\nexcept pcd.ThreadError: print('elsewhere')\n")
        self.assertEqual(0, ended.returncode, ended.stderr)
        self.assertTrue(ended.stdout.startswith("1\n"), ended.stdout)
        self.assertTrue(ended.stdout.endswith("elsewhere\n"), ended.stdout)

    def test_a_later_thread_is_another_one(self):
        """Even if the system gives it the id of the first one, which has ended."""
        ended = run_python(
            "import pcd, threading\n"
            "def run(use):\n"
            "    thread = threading.Thread(target=use)\n"
            "    thread.start()\n    thread.join()\n"
            "def use():\n"
            "    try: print(len(pcd.cameras()))\n"
            "    except pcd.ThreadError: print('elsewhere')\n"
            "run(pcd.simulate)\n"
            "for _ in range(4): run(use)\n")
        self.assertEqual((0, "elsewhere\n" * 4), (ended.returncode, ended.stdout), ended.stderr)

    def test_a_forked_process_is_told_where_the_cameras_are(self):
        printed = self.run_script(
            "camera = pcd.open()\nstream = camera.stream()\nframe = next(stream)\n"
            "pid = os.fork()\n"
            "if pid == 0:\n"
            "    for use in (pcd.cameras, lambda: next(stream), lambda: camera.gain,\n"
            "                lambda: stream.ledger, lambda: stream.dropped, lambda: stream.waiting):\n"
            "        try: use()\n"
            "        except pcd.Error as error: assert 'forked' in str(error), error\n"
            "        else: print('no error')\n"
            "    print(int(frame.array[0, 0, 0]) >= 0, camera)\n"
            "    del frame, stream, camera\n"
            "    sys.exit(7)\n"
            "assert os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]) == 7\n"
            "print(next(stream).sequence > 1)\n")
        self.assertRegex(printed, "^True <pcd.Camera [^,]*>\nTrue\n$")

    def test_a_recording_for_which_no_thread_can_be_started_is_an_error_that_says_so(self):
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o777)
            printed = self.run_script(
                "import resource\ncamera = pcd.open()\n"
                "if os.geteuid() == 0: os.setresuid(65534, 65534, 65534)  # root has no limit\n"
                "resource.setrlimit(resource.RLIMIT_NPROC, (0, 0))\n"
                f"try: camera.record('{folder}/run.ome.tif', 1)\n"
                "except pcd.Error as error: print(error)\n"
                "print(camera.gain)\n")
            self.assertEqual([], os.listdir(folder))
        self.assertRegex(printed, r"^the system has started no thread .*: end other .*\n1\.0\n$")

    def test_another_interpreter_of_the_process_is_refused_and_harms_nothing(self):
        printed = self.run_script(
            "import _xxsubinterpreters as interpreters\n"
            "camera = pcd.open()\n"
            "other = interpreters.create()\n"
            "try: interpreters.run_string(other, f'import sys; sys.path[:0] = {sys.path}; import pcd')\n"
            "except interpreters.RunFailedError as error: print(error)\n"
            "interpreters.destroy(other)\n"
            "print(len([*camera.stream(2)]))\n")
        self.assertIn("pcd works in the main interpreter only: use processes instead", printed)
        self.assertTrue(printed.endswith("\n2\n"), printed)

    def test_a_package_that_is_imported_again_has_the_same_cameras(self):
        printed = self.run_script(
            "camera = pcd.open()\n"
            "for name in [name for name in sys.modules if name.startswith('pcd')]: del sys.modules[name]\n"
            "import pcd as again\n"
            "try: again.open()\n"
            "except again.BusyError: print(again is pcd, len(again.cameras()))\n")
        self.assertEqual("False 1\n", printed)

    def test_a_pool_of_forked_processes_may_use_frames(self):
        printed = self.run_script(
            "import multiprocessing\n"
            "camera = pcd.open()\nframes = [*camera.stream(4)]\nstream = camera.stream()\nnext(stream)\n"
            "def take(number): return int(frames[number].array[120, 53, 0])\n"
            "with multiprocessing.get_context('fork').Pool(2) as pool:\n"
            "    print(pool.map(take, range(4)))\n"
            "print(next(stream).index)\n")
        self.assertEqual("[255, 255, 255, 255]\n1\n", printed)

    def test_ctrl_c_ends_a_script_while_it_waits(self):
        with subprocess.Popen(
                [sys.executable, "-c", START + "camera = pcd.open()\nsimulator.hold('cam-1')\n"
                 "print('waits', flush=True)\nnext(camera.stream(timeout=1000))\n"],
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as program:
            self.assertEqual("waits\n", program.stdout.readline())
            program.send_signal(signal.SIGINT)
            error = program.communicate(timeout=UNTIL)[1]
        self.assertEqual(-signal.SIGINT, program.returncode)
        self.assertIn("KeyboardInterrupt", error)

    def test_a_killed_script_leaves_a_stack_of_its_whole_frames(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder, "run.ome.tif")
            with subprocess.Popen(
                    [sys.executable, "-c", START + f"pcd.open().record({str(path)!r}, 1_000_000)\n"],
                    stderr=subprocess.PIPE, text=True) as program:
                self.addCleanup(program.kill)
                end = time.monotonic() + UNTIL
                while not path.exists() or path.stat().st_size < 10 * FRAME:
                    self.assertIsNone(program.poll(), "ended early")
                    self.assertLess(time.monotonic(), end)
                    time.sleep(0.005)
                program.kill()
                error = program.communicate(timeout=UNTIL)[1]
            self.assertEqual((-signal.SIGKILL, ""), (program.returncode, error))
            import tifffile  # pylint: disable=import-outside-toplevel
            with tifffile.TiffFile(path) as file:
                # What was being written at that moment may be there, but does not count.
                whole = path.stat().st_size // FRAME
                self.assertIn(len(file.pages), range(whole - 1, whole + 1))
                for page in file.pages:
                    pixels = page.asarray()
                    self.assertEqual((240, 322, 3), pixels.shape)
                    self.assertEqual([[255, 0, 0], [0, 255, 0], [0, 0, 255]],
                                     pixels[120, [53, 160, 268]].tolist())
                self.assertIn("the recording was cut short", file.ome_metadata)
                self.assertRegex(file.ome_metadata, r'SizeT="0*[1-9]')

    def test_without_an_sdk_a_warning_says_that_cameras_are_simulated(self):
        ended = run_python("import pcd\nprint(pcd.cameras()[0])\nprint(pcd.cameras()[0])\n")
        self.assertEqual(1, ended.stderr.count("the cameras are simulated"), ended.stderr)
        self.assertIn("Simulated-20MC-SIM20C0001 (simulated)", ended.stdout)

    def test_a_library_that_is_no_sdk_is_an_error(self):
        ended = run_python("import pcd\ntry: pcd.configure(sdk='/nowhere.so')\n"
                           "except pcd.Error as error: print(error)\n"
                           "pcd.simulate(); print(len(pcd.cameras()))\n")
        self.assertIn('cannot use "/nowhere.so" as the camera SDK', ended.stdout)
        self.assertTrue(ended.stdout.endswith("\n2\n"), ended.stdout)

    def test_numbers_keep_their_locale(self):
        printed = self.run_script("import locale\npcd.cameras()\n"
                                  "print(locale.setlocale(locale.LC_NUMERIC))\n",
                                  env={**os.environ, "LC_ALL": "C.UTF-8"})
        self.assertEqual("C\n", printed)


if __name__ == "__main__":
    unittest.main()
