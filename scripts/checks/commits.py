"""Subjects of commits are "area: what changed", at most 72 characters, no full stop."""

import re

from .result import Result
from .tree import MAIN

LONGEST = 72  # characters
SUBJECT = re.compile(r"[\w./*-]+(, [\w./*-]+)*: \S")


def check(tree):
    """Checks the commits that origin's main does not have, or the last one if there are none."""
    result = Result("commits")
    listed = tree.git("log", "--no-merges", "--format=%h %s", f"{MAIN}..HEAD")
    if not listed:
        reason = "has no commit that it has not" if listed == "" else "is not known"
        result.note = f"{MAIN} {reason}, so only the last commit was checked"
        listed = tree.git("log", "--no-merges", "--format=%h %s", "--max-count=1") or ""
    for line in listed.splitlines():
        result.checked += 1
        commit, _, subject = line.partition(" ")
        for text in faults_of(subject):
            result.add(f"commit {commit}", 0, f'"{subject}": {text}')
    return result


def faults_of(subject):
    """What is wrong with a subject, and what is expected."""
    faults = []
    if not SUBJECT.match(subject):
        faults.append('expected "area: what changed", the area a folder, class or program')
    if len(subject) > LONGEST:
        faults.append(f"{len(subject)} characters, expected at most {LONGEST}")
    if subject.endswith("."):
        faults.append("expected no full stop at the end")
    return faults
