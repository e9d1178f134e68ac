"""What happens when the network fails: who reports it, and what waits meanwhile."""

import time

from .live import Experiment, Failure
from .machine import resident_megabytes
from .ways import QUEUED

NOISE = 12  # megabytes by which a sender may grow for other reasons
SOCKETS = 4  # megabytes that both ends of a connection may hold
SHARE = 0.5  # of the frames that could not be sent: more than that in its memory, and it keeps them


def memory_of(experiment, name):
    """The memory of a sender now. Raises EventError if it has ended."""
    experiment.senders[name].check_running()
    return resident_megabytes(experiment.senders[name].process.pid)


def waiting(scale, frames):
    """The megabytes of frames as a camera sends them."""
    return 1e-6 * scale.width * scale.height * frames


def check_memory(name, before, after, unsent):
    """Raises Failure if a sender keeps what it cannot send, of which `unsent` are the megabytes."""
    most = max(NOISE, SHARE * unsent)
    if after - before > most:
        raise Failure(f"{name}: its memory grew from {before:.0f} to {after:.0f} MB while {unsent:.0f} MB "
                      f"of frames could not be sent, expected at most {most:.0f} MB more")


def check_lost(viewer, gone):
    """Raises Failure unless the only computer without pictures at the end is this one. Others can have
    been without for a moment, on a computer with much other work."""
    last = {event["name"]: event["event"] for event in viewer.all("lost", "back")}
    lost = {name for name, kind in last.items() if kind == "lost"}
    if lost != {gone}:
        raise Failure(f"the viewer reported {sorted(lost)} as lost, expected {gone}")


def killed(build, folder, network, scale, way):
    """One computer fails. The others must go on, and the viewer must name it."""
    experiment = Experiment(build, folder, network, scale, way)
    time.sleep(scale.warm_up)
    gone, *others = (computer.name for computer in experiment.cameras)
    process = experiment.senders[gone].process
    process.kill()
    process.wait()
    lost = experiment.viewer.wait("lost", name=gone)
    time.sleep(scale.warm_up)
    ends = experiment.finish(gone)
    for name in others:
        later = [shown for _, shown in ends["viewer"]["streams"][name] if shown > lost["at"]]
        if not later:
            raise Failure(f"{name}: no picture after {gone} was gone")
    check_lost(experiment.viewer, gone)
    print(f"{way}: {gone} was killed: the viewer reported \"{gone}: lost\"; "
          f"{', '.join(others)} went on")


def pulled(build, folder, network, scale, way, seconds):
    """A cable is pulled for some seconds. The viewer must name the computer, the sender must not
    keep what it cannot send, and the pictures must come back."""
    experiment = Experiment(build, folder, network, scale, way)
    time.sleep(scale.warm_up)
    computer = experiment.cameras[0]
    name, sender = computer.name, experiment.senders[computer.name]
    before = memory_of(experiment, name)
    began = time.monotonic()
    network.pull(computer)
    lost = experiment.viewer.wait("lost", since=began, name=name)
    time.sleep(max(0, began + seconds - time.monotonic()))
    after = memory_of(experiment, name)
    plugged = time.monotonic()
    network.pull(computer, False)
    back = experiment.viewer.wait("back", since=plugged, name=name)
    time.sleep(scale.warm_up)
    ends = experiment.finish()
    check_memory(name, before, after, waiting(scale, scale.fps * (plugged - began)))
    drops = sender.all("dropped")
    print(f"{way}: the cable of {name} was out for {plugged - began:.1f} s: the viewer reported "
          f"\"{name}: lost\" after {lost['at'] - began:.1f} s and \"{name}: back\" "
          f"{back['at'] - plugged:.1f} s after it was in again; pcdsrc dropped "
          f"{ends[name]['dropped']} frames, in {len(drops)} messages; memory of the sender "
          f"{before:.0f} MB before, {after:.0f} MB without the cable")
    for event in sender.all("warning") + experiment.viewer.all("connection"):
        print(f"    {event['name']}: {event['text']}")


def must_drop(scale, megabits, bytes_each):
    """True if all cameras together send more than a link takes and sockets and queues hold."""
    sent = 1e-6 * scale.computers * scale.fps * bytes_each
    held = scale.computers * (SOCKETS + 1e-6 * QUEUED * bytes_each)
    return (sent - megabits / 8) * scale.seconds > held


def narrow(build, folder, network, scale, way, megabits):
    """The viewer's link is slower than what is sent. The senders must not keep what waits. Over TCP
    that is in pcdsrc, which must drop it."""
    experiment = Experiment(build, folder, network, scale, way)
    time.sleep(scale.warm_up)
    before = {name: memory_of(experiment, name) for name in experiment.senders}
    network.limit(experiment.viewer_at, megabits)
    try:
        rows = experiment.figures(scale.seconds)
    finally:
        network.limit(experiment.viewer_at, 0)
    for row in rows:
        unsent = max(0, scale.fps - row.shown) * scale.seconds
        check_memory(row.name, before[row.name], row.memory, waiting(scale, unsent))
    if not experiment.way.is_udp and must_drop(scale, megabits, rows[0].bytes_each) \
            and not any(row.dropped for row in rows):  # how they share the link is not known
        raise Failure(f"no pcdsrc dropped a frame, with {megabits} Mbit/s to the viewer")
    return rows
