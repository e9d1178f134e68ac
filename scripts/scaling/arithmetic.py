"""What a hundred cameras need, from a few figures of one. Decimal units, as links and disks have."""

from dataclasses import dataclass

from .ways import PACKET

CAMERAS = 100
USABLE = 0.8  # of a link: the rest is for bursts, and for what is sent again
LINKS = 1, 10, 25, 100  # gigabits a second
# What a packet of RTP has of a picture, without RTP's header and that of JPEG in it; what it takes of
# the wire, with UDP, IP, Ethernet, its checksum and preamble, and the gap after it. In bytes.
PICTURE = PACKET - 12 - 8
ON_WIRE = PACKET + 8 + 20 + 14 + 4 + 8 + 12
LOSSLESS = 1.4  # by which Blosc makes the noise of a sensor smaller: docs/recording.md
HOUR = 3600
INODE_BYTES = 16384, 65536  # mke2fs makes one inode for as many bytes: up to 4 TB, from 16 TB on
FOLDERS = 2  # of a chunk, besides the frame's: its channel, its row
RATES = 30, 1000  # pictures a second


@dataclass(frozen=True)
class Camera:
    """One camera: its pictures, and how large each is as it travels and as it is stored."""

    name: str
    fps: int
    live: float  # megabytes
    stored: float
    channels: int

    def gigabits(self):
        """A second on the wire, with all that is around a picture."""
        return 8e-3 * self.fps * self.live * ON_WIRE / PICTURE

    def terabytes(self):
        """An hour of OME-Zarr."""
        return 1e-6 * self.fps * self.stored * HOUR

    def chunks(self):
        """A second."""
        return self.fps * self.channels

    def inodes(self):
        """An hour: for each frame its folder, and for each channel a chunk and its folders."""
        return HOUR * self.fps * (1 + self.channels * (1 + FOLDERS))


def raw(name, width, height, channels, fps):
    """A camera whose pictures travel as they are."""
    size = 1e-6 * width * height * channels
    return Camera(name, fps, size, size / LOSSLESS, channels)


SMALL = 1e-6 * 640 * 480
STREAMS = (
    Camera("640x480 grey, 30/s, VP8 of 2 Mbit/s", 30, 0.009, SMALL / LOSSLESS, 1),
    Camera("640x480 grey, 30/s, JPEG", 30, 0.0795, SMALL / LOSSLESS, 1),
    raw("1280x960 grey, 30/s, raw", 1280, 960, 1, 30),
    raw("640x480 grey, 1000/s, raw", 640, 480, 1, 1000),
    raw("5440x3648 colour, 15/s, raw", 5440, 3648, 3, 15),
)
CLOCKS = (
    ("none: 20 ppm of difference, after an hour", 72e-3),
    ("NTP over the Internet: \"a few milliseconds\"", 5e-3),
    ("`arrived_utc`: milliseconds are its last digit", 1e-3),
    ("NTP in a local network: \"tens of microseconds\"", 50e-6),
    ("NTP or PTP with hardware stamps: \"sub-microsecond\"", 1e-6),
)


def most(camera, link):
    """How many cameras fit onto a link."""
    return int(USABLE * link / camera.gigabits())


def number(value):
    """Three digits, without an exponent."""
    return f"{value:,.0f}" if value >= 100 else f"{value:.3g}"


def plain(value):
    """All digits, without an exponent."""
    return f"{value:.6f}".rstrip("0").rstrip(".")


def rows(head, lines):
    """A table."""
    return ["| " + " | ".join(head) + " |", "|---" * len(head) + "|",
            *("| " + " | ".join(line) + " |" for line in lines)]


def links():
    """Cameras for each link."""
    return rows(["one camera", "Gbit/s", "a hundred", *(f"on {link} GbE" for link in LINKS)],
                ([camera.name, number(camera.gigabits()), number(CAMERAS * camera.gigabits()),
                  *(str(most(camera, link)) for link in LINKS)] for camera in STREAMS))


def storage():
    """Recordings of all cameras, an hour of them."""
    return rows(["a hundred cameras, recorded", "MB/s", "TB an hour", "chunks a second",
                 "million inodes an hour", "TB of an ext4 with as many", "of 16 TB and more"],
                ([camera.name.rsplit(", ", 1)[0],
                  number(CAMERAS * camera.fps * camera.stored),
                  number(CAMERAS * camera.terabytes()), number(CAMERAS * camera.chunks()),
                  number(1e-6 * CAMERAS * camera.inodes()),
                  *(number(1e-12 * CAMERAS * camera.inodes() * each) for each in INODE_BYTES)]
                 for camera in STREAMS[1:]))


def clocks():
    """Errors of clocks, in pictures."""
    return rows(["clocks", "error", *(f"pictures at {rate}/s" for rate in RATES)],
                ([name, f"{1e3 * error:g} ms", *(plain(error * rate) for rate in RATES)]
                 for name, error in CLOCKS))


def tables():
    """All tables of docs/scale.md that are computed, line by line."""
    return [*links(), "", *storage(), "", *clocks()]
