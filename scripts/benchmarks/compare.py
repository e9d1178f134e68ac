"""What changed between two runs."""

from .table import aligned, number

COLUMNS = ("figure", "before", "now", "change", "")


def spread_of(figure):
    """The distance of the quartiles, as a share of the ratio."""
    return figure.spread / figure.ratio if figure.ratio and figure.spread else 0


def bounded(figure):
    """The number that the target bounds, as text."""
    return "not built" if figure.missing else number(figure.bounded)


def note(before, now):
    """What a reader should see first."""
    if before.missing or now.missing:
        return "" if now.missing and before.missing else "NOT BUILT" if now.missing else "new"
    if before.holds != now.holds:
        return "holds now" if now.holds else "NO LONGER HOLDS"
    if before.bounded and abs(now.bounded / before.bounded - 1) > max(
            0.03, spread_of(before), spread_of(now)):
        return "better" if now.bounded < before.bounded else "worse"
    return ""


def cells(before, now):
    """The row of a figure that both runs have."""
    change = "-"
    if before.bounded and not now.missing:
        change = f"{100 * (now.bounded / before.bounded - 1):+.1f} %"
    return (now.name, bounded(before), bounded(now), change, note(before, now))


def differences(before, now):
    """Two runs side by side as lines; a change within the spread of either is not remarked on."""
    old = {figure.name: figure for figure in before}
    rows = [COLUMNS]
    rows += [cells(old[figure.name], figure) for figure in now if figure.name in old]
    rows += [(figure.name, "-", bounded(figure), "-", "new") for figure in now
             if figure.name not in old]
    names = {figure.name for figure in now}
    rows += [(figure.name, bounded(figure), "-", "-", "not measured now")
             for figure in before if figure.name not in names]
    return aligned(rows)
