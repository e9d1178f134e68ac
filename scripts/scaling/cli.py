"""The command line of scripts/scale."""

import argparse
import subprocess
import sys
import tempfile
from dataclasses import replace
from pathlib import Path

from . import arithmetic, clocks, faults, network, store
from .events import EventError
from .live import Experiment, Failure, Scale, Site, heading, line_of
from .ways import WAYS

EXIT_FAILED, EXIT_BAD_INPUT, EXIT_INTERRUPTED = 1, 2, 130
SIDES = 16, 16384  # of a simulated camera, in pixels
MOST_COMPUTERS = 250  # of one network, besides the viewer
BAD_LINES = (("20 ms each way", {"delay": 20}), ("1 % lost", {"delay": 20, "loss": 0.01}),
             ("5 % lost", {"delay": 20, "loss": 0.05}))
# Of --quick. So much is lost that small pictures lose some in a second, and so little that enough of those of VP8
# are left on which others build.
QUICK_LINES = (("20 ms each way", {"delay": 20}), ("10 % lost", {"loss": 0.1}))
QUICK_FAULTS = ["rtp-jpeg", "srt-vp8"]
NARROW = 90, 60, 20, 8, 6  # megabits a second
# Of --quick: all pictures of its small camera would find room in the sockets.
LARGE = {"computers": 1, "width": 640, "height": 480, "fps": 100, "seconds": 1.5, "source": "specimen"}
LARGE_NARROW = 4
QUICK_FRAMES = 20


def size(text):
    """Two numbers with an x between them."""
    width, _, height = text.partition("x")
    sides = [int(side) if side.isdecimal() else 0 for side in (width, height)]
    if not all(SIDES[0] <= side <= SIDES[1] for side in sides):
        raise argparse.ArgumentTypeError(
            f'"{text}", expected a size such as 640x480, from {SIDES[0]} to {SIDES[1]} pixels')
    return tuple(sides)


def positive(text):
    """A number above 0."""
    try:
        value = float(text)
    except ValueError:
        value = 0
    if not 0 < value < float("inf"):
        raise argparse.ArgumentTypeError(f'"{text}", expected a number above 0')
    return value


def count(text):
    """A whole number above 0."""
    if not text.isdecimal() or int(text) == 0:
        raise argparse.ArgumentTypeError(f'"{text}", expected a whole number above 0')
    return int(text)


def parser():
    """The options."""
    made = argparse.ArgumentParser(
        prog="scripts/scale", description="Measures simulated cameras on several computers, which are "
        "network namespaces of this one, or addresses of loopback where those are not available. "
        "See docs/scale.md.")
    made.add_argument("what", choices=("live", "faults", "store", "clocks", "hundred"),
                      help="live pictures; what a bad network does; recordings in an object store; "
                      "clocks; the arithmetic for a hundred cameras")
    made.add_argument("--computers", type=count, default=4, metavar="N", help="with cameras (4)")
    made.add_argument("--size", type=size, default=(640, 480), metavar="WxH", help="(640x480)")
    made.add_argument("--fps", type=count, default=30, metavar="N", help="of each camera (30)")
    made.add_argument("--seconds", type=positive, default=10, metavar="N", help="of each measurement (10)")
    made.add_argument("--frames", type=count, default=300, metavar="N", help="of a recording (300)")
    made.add_argument("--way", action="append", metavar="NAME",
                      help="rtp-jpeg, rtp-vp8, tcp-jpeg or srt-vp8; more than once for several (all)")
    made.add_argument("--build", type=Path, metavar="FOLDER", help="of the programs (default: build)")
    made.add_argument("--picture", default="", metavar="FILE.jpg", help="save what the viewer shows")
    made.add_argument("--quick", action="store_true",
                      help="a few seconds of everything: whether it works, not what it costs")
    return made


def scale_of(options):
    """How much is measured."""
    (width, height), picture = options.size, options.picture
    made = Scale(options.computers, width, height, options.fps, options.seconds, "specimen",
                 bits=2_000_000, picture=picture)
    if options.quick:
        made = replace(made, computers=2, width=160, height=120, fps=60, seconds=1.5,
                       source="patches", bits=200_000, warm_up=0.3)
    return made


def show_live(build, folder, net, scale, options):
    """What live pictures cost."""
    if not options.quick:
        share = Site(build, folder, net, scale).camera_alone()
        print(f"{scale.width}x{scale.height} at {scale.fps}/s; the simulated camera and pcdsrc alone: "
              f"{share:.2f} of a core")
    print(heading())
    good = [("as it is", None)]
    bad = list(QUICK_LINES) if options.quick else good + list(BAD_LINES)
    for way in options.way:
        for name, line in bad if WAYS[way].is_udp else good:
            experiment = Experiment(build, folder, net, scale, way, line)
            rows = experiment.figures(scale.seconds)
            for row in rows:
                if not row.shown:
                    raise Failure(f"{way}, {name}: no picture of {row.name} was shown")
            print(line_of(way, name, rows, experiment.packets), flush=True)


def show_faults(build, folder, net, scale, options):
    """What a bad network does."""
    for way in options.way:
        faults.killed(build, folder, net, scale, way)
        if not net.is_real:
            print(f"{way}: no cable was pulled and no link was limited: they need namespaces")
            continue
        for seconds in (1.5,) if options.quick else (3, 8):
            faults.pulled(build, folder, net, scale, way, seconds)
        if not options.quick:
            show_narrow(build, folder, net, scale, way, NARROW)
    if options.quick and net.is_real:
        show_narrow(build, folder, net, replace(scale, **LARGE), "tcp-jpeg", [LARGE_NARROW])


def show_narrow(build, folder, net, scale, way, rates):
    """What links to the viewer do that are slower and slower."""
    print(heading())
    for megabits in rates:
        rows = faults.narrow(build, folder, net, scale, way, megabits)
        print(line_of(way, f"{megabits} Mbit/s to the viewer", rows), flush=True)


def check(options, build):
    """What is wrong with the options, as a text; or an empty one."""
    for way in options.way:
        if way not in WAYS:
            return f"--way {way}: expected one of {', '.join(WAYS)}"
    if options.computers > MOST_COMPUTERS:
        return f"--computers {options.computers}: expected at most {MOST_COMPUTERS}"
    if options.picture and not Path(options.picture).absolute().parent.is_dir():
        return f"--picture {options.picture}: its folder does not exist, expected one that does"
    if options.what == "faults" and options.computers < 2:
        return f"--computers {options.computers}: expected at least 2, as one is killed and others go on"
    for path in (build / "lib/gstreamer-1.0/libgstpcd.so", build / "bin/pcdctl"):
        if not path.exists():
            return f"{path}: not there, expected what scripts/build makes"
    return ""


def experiment(root, options):
    """Runs an experiment; returns the exit code."""
    is_quick_fault = options.quick and options.what == "faults"
    options.way = options.way or (QUICK_FAULTS if is_quick_fault else list(WAYS))
    scale, build = scale_of(options), (options.build or root / "build").resolve()
    wrong = check(options, build)
    if wrong:
        print(f"scripts/scale: {wrong}", file=sys.stderr)
        return EXIT_BAD_INPUT
    why_not = network.enter(sys.argv)
    with tempfile.TemporaryDirectory() as folder, network.Network(why_not) as net:
        print(net.describe(), flush=True)
        folder = Path(folder)
        try:
            if options.what == "store":
                store.run(build, folder, net, scale, QUICK_FRAMES if options.quick else options.frames)
            elif options.what == "clocks":
                clocks.run(build, folder, net, scale, options.quick)
            else:
                show = {"live": show_live, "faults": show_faults}[options.what]
                show(build, folder, net, scale, options)
        except (Failure, EventError, OSError, subprocess.SubprocessError) as failure:
            print(f"scripts/scale: {failure}", file=sys.stderr)
            return EXIT_FAILED
    return 0


def main(root):
    """Runs the command; returns the exit code."""
    options = parser().parse_args()
    if options.what == "hundred":
        print("\n".join(arithmetic.tables()))
        return 0
    try:
        return experiment(root, options)
    except (network.NetworkError, OSError, subprocess.SubprocessError) as error:
        print(f"scripts/scale: {error}", file=sys.stderr)
        return EXIT_FAILED
    except KeyboardInterrupt:
        return EXIT_INTERRUPTED
