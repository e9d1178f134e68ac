"""What happens when the network fails: who reports it, and what waits meanwhile."""

import time

from .live import Experiment, Failure
from .machine import resident_megabytes

MOST_GROWTH = 64  # megabytes that a sender may need for what waits


def memory_of(experiment, name):
    """The memory of a sender now."""
    return resident_megabytes(experiment.senders[name].process.pid)


def check_memory(name, before, after):
    """Raises Failure if a sender keeps pictures that it cannot send."""
    if after - before > MOST_GROWTH:
        raise Failure(f"{name}: its memory grew from {before:.0f} to {after:.0f} MB")


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
    ends = experiment.finish()
    for name in others:
        later = [shown for _, shown in ends["viewer"]["streams"][name] if shown > lost["at"]]
        if not later:
            raise Failure(f"{name}: no picture after {gone} was gone")
    named = {event["name"] for event in experiment.viewer.all("lost")}
    if named != {gone}:
        raise Failure(f"the viewer reported {sorted(named)} as lost, expected {gone}")
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
    network.pull(computer)
    began = time.monotonic()
    lost = experiment.viewer.wait("lost", name=name)
    time.sleep(max(0, began + seconds - time.monotonic()))
    after = memory_of(experiment, name)
    network.pull(computer, False)
    plugged = time.monotonic()
    back = experiment.viewer.wait("back", name=name)
    time.sleep(scale.warm_up)
    ends = experiment.finish()
    check_memory(name, before, after)
    drops = sender.all("dropped")
    print(f"{way}: the cable of {name} was out for {plugged - began:.1f} s: the viewer reported "
          f"\"{name}: lost\" after {lost['at'] - began:.1f} s and \"{name}: back\" "
          f"{back['at'] - plugged:.1f} s after it was in again; pcdsrc dropped "
          f"{ends[name]['dropped']} frames, in {len(drops)} messages; memory of the sender "
          f"{before:.0f} MB before, {after:.0f} MB without the cable")
    for event in sender.all("warning") + experiment.viewer.all("connection"):
        print(f"    {event['name']}: {event['text']}")


def narrow(build, folder, network, scale, way, megabits):
    """The viewer's link is slower than what is sent. The senders must not keep what waits."""
    experiment = Experiment(build, folder, network, scale, way)
    time.sleep(scale.warm_up)
    before = {name: memory_of(experiment, name) for name in experiment.senders}
    network.limit(experiment.viewer_at, megabits)
    try:
        rows = experiment.figures(scale.seconds)
    finally:
        network.limit(experiment.viewer_at, 0)
    for row in rows:
        check_memory(row.name, before[row.name], row.memory)
    return rows
