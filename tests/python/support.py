"""What the tests of the Python module have in common: small simulated cameras."""

import ctypes
import subprocess
import sys
import threading
import unittest

import pcd
from pcd import _pcd

UNTIL = 60  # seconds: the longest wait for what must happen


def camera(id_="cam-1", **keys):
    """A camera of a scene: small, fast, with exact colours."""
    return {
        "id": id_, "model": "Small", "serial": id_.upper(),
        "flags": ["TRIGGER_SOFTWARE", "TRIGGER_EXTERNAL"],
        "resolutions": [{"width": 322, "height": 240, "fps": 100},
                        {"width": 160, "height": 120, "fps": 100}],
        "exposure": {"default": 1000, "auto": False},
        "source": {"kind": "patches"}, **keys}


def scene(*cameras, faults=()):
    """A scene of these cameras, or of one."""
    return {"cameras": list(cameras or [camera()]), "faults": list(faults)}


class SceneTest(unittest.TestCase):
    """A test with one camera, "cam-1", plugged in and closed."""

    def setUp(self):
        self.simulator = pcd.simulate()
        self.sdk = ctypes.CDLL(_pcd.sdk_path())
        self.simulator.clear_faults()
        self.load(scene())

    def load(self, new):
        """Loads a scene, and waits until the cameras of the old one are gone."""
        self.simulator.load({"cameras": []})
        self.assertTrue(pcd.wait_for(lambda: not pcd.cameras(), UNTIL))
        self.simulator.load(new)
        self.assertTrue(pcd.wait_for(lambda: len(pcd.cameras()) == len(new["cameras"]), UNTIL))

    def pull(self, id_):
        """Unplugs a camera as a hand does: the SDK tells the thread of the cameras. Any thread."""
        self.sdk.ToupcamSim_unplug(id_.encode())

    def when(self, is_ready, act):
        """Calls `act` on another thread as soon as `is_ready()`, while this one may wait."""
        is_over = threading.Event()

        def watch():
            while not is_over.is_set():
                if is_ready():
                    act()
                    return
                is_over.wait(0.005)
        thread = threading.Thread(target=watch)
        thread.start()
        self.addCleanup(thread.join)
        self.addCleanup(is_over.set)


class Nameless:
    """A value that cannot be shown."""

    def __repr__(self):
        raise OSError("no name")


def run_python(code, **options):
    """Runs a program in a Python of its own, which sees the same modules."""
    return subprocess.run([sys.executable, "-c", code], text=True, capture_output=True,
                          timeout=2 * UNTIL, check=False, **options)
