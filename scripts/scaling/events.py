"""Events of the programs that scripts/scale starts: one line of JSON each, on standard output."""

import json
import os
import selectors
import subprocess
import sys
import time


def emit(kind, **more):
    """Writes an event."""
    sys.stdout.write(json.dumps({"event": kind, "at": time.monotonic(), **more}) + "\n")
    sys.stdout.flush()


class EventError(Exception):
    """A program ended, or did not report in time."""


class Events:
    """The events of one process, whose standard output is a pipe."""

    def __init__(self, name, process):
        self.name = name
        self.process = process
        self.seen = []
        self.rest = b""
        self.selector = selectors.DefaultSelector()
        self.selector.register(process.stdout, selectors.EVENT_READ)

    def wait(self, kind, seconds=60, since=0.0, **fields):
        """The first event of a kind with these fields that was not waited for yet, and that was not
        before a moment. Others are kept."""
        end = time.monotonic() + seconds
        while True:
            for event in self.seen:
                if event["event"] == kind and not event.get("taken") and event["at"] >= since \
                        and all(event.get(key) == value for key, value in fields.items()):
                    event["taken"] = True
                    return event
            if not self.read(end - time.monotonic()):
                raise EventError(f"{self.name}: {self.state()}, without the event \"{kind}\" "
                                 f"{fields or ''}; there were {self.seen[-5:]}")

    def state(self):
        """Whether the program runs, and what it reported last if it failed."""
        errors = "".join(f": {event['text']}" for event in self.seen if event["event"] == "error")
        try:
            return f"ended with code {self.process.wait(0.2)}{errors}"
        except subprocess.TimeoutExpired:
            return f"is running{errors}"

    def check_running(self):
        """Raises EventError if the program has ended."""
        if self.process.poll() is not None:
            self.all("error")
            raise EventError(f"{self.name}: {self.state()}, while it was measured")

    def read(self, seconds):
        """Reads what there is within a time. Returns False if nothing came, or at the end."""
        if seconds <= 0 or not self.selector.select(seconds):
            return False
        data = os.read(self.process.stdout.fileno(), 1 << 20)
        *lines, self.rest = (self.rest + data).split(b"\n")
        for line in lines:
            try:
                self.seen.append(json.loads(line))
            except ValueError:
                raise EventError(f"{self.name}: {line}, expected an event") from None
        return bool(data)

    def all(self, *kinds):
        """The events of some kinds so far."""
        while self.read(0.01):
            pass
        return [event for event in self.seen if event["event"] in kinds]
