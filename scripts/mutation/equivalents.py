"""Changes that no test can be expected to detect, each with the reason; always counted."""

import re

# Operators it is about (empty: all), a pattern of the changed line, the reason.
EXCLUDED = (
    ((), r"\breserve\(", "reserves memory ahead: only speed depends on it"),
    ((), r"\bQtTsan::", "instructions to the thread sanitizer: nothing in this build"),
    ((), r"\bQ_ASSERT", "checks itself, and only in a debug build"),
    ((), r"\bQ_UNUSED\(", "says to the compiler that something is not used"),
)


def reason_to_exclude(mutant):
    """Why a mutant is left out, or None."""
    for operators, pattern, reason in EXCLUDED:
        if (not operators or mutant.operator in operators) and re.search(pattern, mutant.before):
            return reason
    return None
