"""The module in a kernel of Jupyter, with cells and interrupts as a notebook sends them."""

import base64
import json
import os
import queue
import struct
import sys
import tempfile
import time
import unittest
from pathlib import Path

from jupyter_client.manager import KernelManager

from support import UNTIL, scene

EXAMPLE = Path(__file__).resolve().parents[2] / "examples/python/first_pictures.ipynb"
START = f"""
import asyncio, pcd
simulator = pcd.simulate({scene()!r})
camera = pcd.open()
"""


class Kernel(unittest.TestCase):
    """Tests with one kernel: it takes a second to start."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.kernel = KernelManager(connection_file=f"{folder.name}/kernel.json", transport="ipc",
                                   ip=f"{folder.name}/socket")
        # This Python, whatever is registered for the user.
        cls.kernel.kernel_spec.argv = [sys.executable, "-m", "ipykernel_launcher", "-f",
                                       "{connection_file}"]
        # Nothing is read from or written to the user's folders.
        places = {name: folder.name for name in ("IPYTHONDIR", "JUPYTER_CONFIG_DIR",
                                                 "JUPYTER_DATA_DIR", "JUPYTER_RUNTIME_DIR")}
        cls.kernel.start_kernel(env={**os.environ, **places})
        cls.addClassCleanup(cls.kernel.shutdown_kernel, now=True)
        cls.client = cls.kernel.blocking_client()
        cls.client.start_channels()
        cls.addClassCleanup(cls.client.stop_channels)
        cls.client.wait_for_ready(timeout=UNTIL)

    def run_cell(self, code, interrupt_at=None):
        """Runs a cell, and returns what it printed, the bundles it showed and its error's name.

        The kernel is interrupted once the cell has printed this text.
        """
        # An error would skip what is sent until the kernel has told all clients.
        message = self.client.execute(code, stop_on_error=False)
        printed, shown, error = "", [], None
        end = time.monotonic() + UNTIL
        while True:
            try:
                found = self.client.get_iopub_msg(timeout=max(0.1, end - time.monotonic()))
            except queue.Empty:
                self.fail(f"the cell did not end; it printed {printed!r}")
            if found["parent_header"].get("msg_id") != message:
                continue
            kind, content = found["msg_type"], found["content"]
            if kind == "stream":
                printed += content["text"] if content["name"] == "stdout" else ""
                if interrupt_at and interrupt_at in printed:
                    interrupt_at = None
                    self.kernel.interrupt_kernel()
            elif kind in ("execute_result", "display_data"):
                shown.append(content["data"])
            elif kind == "error":
                error = content["ename"]
            elif kind == "status" and content["execution_state"] == "idle":
                return printed, shown, error


class Example(Kernel):
    def test_the_example_runs_cell_by_cell(self):
        cells = json.loads(EXAMPLE.read_text(encoding="utf-8"))["cells"]
        ended = {}
        for cell in cells:
            if cell["cell_type"] != "code":
                continue
            self.assertEqual(([], None), (cell["outputs"], cell["execution_count"]))
            printed, shown, error = self.run_cell("".join(cell["source"]))
            self.assertIsNone(error, cell["source"])
            ended[cell["id"]] = printed + "".join(one["text/plain"] for one in shown)
            if cell["id"] == "snap":
                self.assertIn("image/png", shown[0])
        self.assertIn("Simulated-1MM", ended["cameras"])
        self.assertIn("(960, 1280), dtype('uint8')", ended["pixels"])
        self.assertIn("Range(minimum=1.0, maximum=16.0, step=0.01)", ended["properties"])
        self.assertEqual(("True", "[0, 1, 2, 3, 4]"), (ended["loop"], ended["await"]))


class Notebook(Kernel):
    def setUp(self):
        self.run_cell(START)
        self.addCleanup(self.run_cell, "simulator.hold('cam-1', False)\ncamera.close()")

    def test_cells_have_cameras_and_a_last_line_shows_a_frame_as_a_picture(self):
        printed, shown, error = self.run_cell(
            "print([frame.index for frame in camera.stream(3)])\ncamera.snap()")
        self.assertEqual(("[0, 1, 2]\n", None), (printed, error))
        self.assertTrue(shown[0]["text/plain"].startswith("<pcd.Frame "), shown)
        file = base64.b64decode(shown[0]["image/png"])
        self.assertEqual((b"\x89PNG", (322, 240)), (file[:4], struct.unpack(">II", file[16:24])))

    def test_a_cell_may_await_frames(self):
        printed, _, error = self.run_cell(
            "async def numbers():\n"
            "    return [frame.index async for frame in camera.astream(4)]\n"
            "print(await numbers(), [frame.index async for frame in camera.astream(2)])\n")
        self.assertEqual(("[0, 1, 2, 3] [0, 1]\n", None), (printed, error))

    def test_between_cells_functions_are_called_for_cameras_that_go(self):
        self.run_cell("gone = asyncio.Event()\n"
                      "subscription = pcd.on_unplug(lambda one: gone.set())\npcd.attach()\n"
                      "import ctypes\n"
                      "ctypes.CDLL(pcd._pcd.sdk_path()).ToupcamSim_unplug(b'cam-1')\n")
        printed, _, error = self.run_cell("await asyncio.wait_for(gone.wait(), 60)\n"
                                          "subscription.cancel()\nprint(pcd.cameras())\n")
        self.assertEqual(("[]\n", None), (printed, error))

    def test_an_interrupted_loop_leaves_a_usable_camera(self):
        for loop in ("for frame in camera.stream():\n    if frame.index == 3: print('runs', flush=True)",
                     "print('runs', flush=True)\nsimulator.hold('cam-1')\n"
                     "for frame in camera.stream(): pass",
                     "print('runs', flush=True)\nframes = [frame.index for frame in camera.stream()]",
                     "print('runs', flush=True)\nwith camera.stream() as stream:\n"
                     "    for frame in stream: pass",
                     "print('runs', flush=True)\nsimulator.hold('cam-1')\ncamera.snap()",
                     "print('runs', flush=True)\npcd.wait_for(lambda: False)",
                     "print('runs', flush=True)\nwhile True: camera.snap()"):
            with self.subTest(loop):
                _, _, error = self.run_cell(loop, interrupt_at="runs")
                self.assertEqual("KeyboardInterrupt", error)
                printed, _, error = self.run_cell(
                    "simulator.hold('cam-1', False)\n"
                    "print(len([*camera.stream(2)]), camera.snap().still)")
                self.assertEqual(("2 True\n", None), (printed, error))

    def test_an_interrupted_await_leaves_a_usable_camera(self):
        for loop in ("async for frame in camera.astream():\n    pass",
                     "frames = [frame.index async for frame in camera.astream()]",
                     "simulator.hold('cam-1')\nasync for frame in camera.astream(): pass"):
            with self.subTest(loop):
                _, _, error = self.run_cell("print('runs', flush=True)\n" + loop,
                                            interrupt_at="runs")
                self.assertIn(error, ("KeyboardInterrupt", "CancelledError"))
                printed, _, error = self.run_cell(
                    "simulator.hold('cam-1', False)\n"
                    "print(len([*camera.stream(2)]), camera.snap().still)")
                self.assertEqual(("2 True\n", None), (printed, error))


if __name__ == "__main__":
    unittest.main()
