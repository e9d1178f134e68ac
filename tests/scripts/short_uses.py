"""A short program in Python and a short pipeline of GStreamer, for the tests of what was installed."""

import json
from pathlib import Path

# Takes a still and a few frames; prints what they are, and which of our libraries were loaded from where.
PROGRAM = r"""
import json, re
import pcd

pcd.simulate()
with pcd.open("Simulated-1MM") as camera:
    pictures = [camera.snap().array, *(frame.array for frame in camera.stream(3))]
with open("/proc/self/maps") as maps:
    mapped = {line.split()[-1] for line in maps}
print(json.dumps({
    "shapes": [picture.shape for picture in pictures],
    "contrasts": [int(picture.max()) - int(picture.min()) for picture in pictures],
    "package": pcd.__file__,
    "libraries": sorted(path for path in mapped if re.search(r"/(_pcd\..*|libP[A-Z]\w+|libtoupcam)\.so", path))}))
"""
# Of 640 x 480 bytes, each a pixel.
FRAMES = 3
PIPELINE = ("gst-launch-1.0", "-q", "pcdsrc", "sdk=sim", "camera=1", "mode=1", f"num-buffers={FRAMES}", "!", "filesink")


def check_program(case, printed, package, libraries):
    """Expects what the program prints if the package is in one folder and the libraries are in another."""
    found = json.loads(printed)
    case.assertEqual(found["shapes"], [[960, 1280]] * 4)
    case.assertGreater(min(found["contrasts"]), 20)
    case.assertEqual(Path(found["package"]).parent, package)
    expected = {"_pcd": package, "libPTDevice": libraries / "pcd/plugins", "libtoupcam": libraries / "pcd/sim",
                **dict.fromkeys(("libPCd", "libPCore", "libPDip", "libPGui", "libPLog"), libraries)}
    loaded = [(path.name.partition(".")[0], path.parent) for path in map(Path, found["libraries"])]
    case.assertEqual(sorted(loaded), sorted(expected.items()))


def check_frames(case, file):
    """Expects what the pipeline writes."""
    pixels = file.read_bytes()
    case.assertEqual(len(pixels), FRAMES * 640 * 480)
    case.assertGreater(max(pixels) - min(pixels), 20)
