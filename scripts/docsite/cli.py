"""The command line of scripts/docs."""

import argparse
import subprocess
import sys
import time
from pathlib import Path

from checks.tree import InputError

from .fault import Fault
from .links import broken_links
from .sentences import pages_without_sentence
from .site import Site

EXIT_FOUND, EXIT_BAD_INPUT = 1, 2
DEPENDENCIES = Path(__file__).resolve().parents[1] / "dependencies"


def step(name, faults, count, unit, started):
    """Prints what a step found. Returns True if all is well."""
    for fault in faults:
        print(fault)
    print(f"{name}: {count} {unit}, {len(faults)} faults ({time.monotonic() - started:.1f} s)",
          flush=True)
    return count > 0 and not faults


def run(root):
    """Builds and checks the site; returns the exit code."""
    site = Site(root)
    started = time.monotonic()
    site.build()
    good = step("build", [], len(site.headers) + len(site.guides.texts), "headers and guides",
                started)
    started = time.monotonic()
    good = step("sentences", *pages_without_sentence(site.work / "xml"), "pages", started) and good
    started = time.monotonic()
    good = step("links", *broken_links(site.folder), "links", started) and good
    print(f"The site is in {site.folder.relative_to(site.tree.root)}/index.html")
    return 0 if good else EXIT_FOUND


def main(root, arguments=None):
    """Runs the command line; returns the exit code."""
    argparse.ArgumentParser(prog="scripts/docs", description="Builds the site of guides and API "
                            "in build/site, and checks it.").parse_args(arguments)
    if subprocess.run([DEPENDENCIES, "docs"], check=False).returncode != 0:
        return EXIT_BAD_INPUT
    try:
        return run(Path(root))
    except Fault as fault:
        print(fault)
        return EXIT_FOUND
    except InputError as error:
        print(f"scripts/docs: {error}", file=sys.stderr)
        return EXIT_BAD_INPUT
