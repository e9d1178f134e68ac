"""Figures as text."""

COLUMNS = ("figure", "ours", "reference", "ratio", "+/-", "target", "holds")


def number(value):
    """Three digits that count, without an exponent."""
    if value == 0:
        return "0"
    digits = 0 if abs(value) >= 100 else 1 if abs(value) >= 10 else 2 if abs(value) >= 1 else 3
    return f"{value:.{digits}f}"


def cost(value, unit):
    """A number with its unit, or a dash."""
    return "-" if value is None else f"{number(value)} {unit}"


def ratio(value):
    """A ratio, or a dash."""
    return "-" if value is None else f"{value:.3f}"


def cells(figure):
    """The row of a figure."""
    target = number(figure.target) if figure.ratio is not None else cost(figure.target, figure.unit)
    if figure.missing:
        return (figure.name, "not built", "-", "-", "-", number(figure.target), "NO")
    return (figure.name, cost(figure.ours, figure.unit), cost(figure.reference, figure.unit),
            ratio(figure.ratio), ratio(figure.spread), target, "yes" if figure.holds else "NO")


def aligned(rows):
    """Rows as lines; names to the left, numbers to the right."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    for row in rows:
        first, *others = (f"{cell:>{width}}" for cell, width in zip(row, widths))
        yield f"{row[0]:<{len(first)}}  " + "  ".join(others)


def table(figures):
    """The figures as lines, and what each compares."""
    yield from aligned([COLUMNS, *map(cells, figures)])
    yield ""
    width = max((len(figure.name) for figure in figures), default=0)
    for figure in figures:
        against = f", against: {figure.against}" if figure.against else ""
        yield f"{figure.name:<{width}}  {figure.what}{against}"


def failing(figures):
    """The names of the figures whose targets do not hold."""
    return [figure.name for figure in figures if not figure.holds and not figure.missing]


def missing(figures):
    """The names of the figures that this build cannot measure."""
    return [figure.name for figure in figures if figure.missing]
