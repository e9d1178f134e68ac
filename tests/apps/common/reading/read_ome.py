# SPDX-License-Identifier: MIT
"""Opens an OME-TIFF with a reader that is not ours (tifffile) and prints what it found, as JSON."""
import json
import sys

import tifffile

with tifffile.TiffFile(sys.argv[1]) as tiff:
    series = tiff.series[0]
    pictures = series.asarray()
    if not series.axes.startswith("T"):
        pictures = pictures[None]
    pixels = tifffile.xml2dict(tiff.ome_metadata)["OME"]["Image"]["Pixels"]
    planes = pixels.get("Plane", [])
    planes = planes if isinstance(planes, list) else [planes]
    # The middles of three patches, and the corner: a sixth of the width each, a twelfth between.
    height, width = pictures.shape[1:3]
    places = [(height // 2, width * (2 + 4 * patch) // 12) for patch in range(3)] + [(0, 0)]
    print(json.dumps({
        "isOme": tiff.is_ome,
        "axes": series.axes,
        "shape": list(series.shape),
        "type": str(series.dtype),
        "exposures": [plane.get("ExposureTime") for plane in planes],
        "colours": [[[int(v) for v in frame[place]] for place in places] for frame in pictures],
    }))
