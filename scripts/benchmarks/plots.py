"""Draws the curves of bench_growth: time and memory against size, as SVG files for the documents."""

from pathlib import Path

import matplotlib

matplotlib.use("svg")
# The same rows give the same files, on any machine: text stays text, and ids are not random.
matplotlib.rcParams.update({
    "svg.hashsalt": "performance",
    "svg.fonttype": "none",
    "font.family": "sans-serif",
    "font.size": 9,
    "axes.spines.top": False,
    "axes.spines.right": False,
})

from matplotlib import pyplot, ticker  # noqa: E402  (the settings come first)

COLOURS = ("#1f5fa8", "#b4521e", "#3c7d3c", "#6a4c93")
FIELDS = ("plot", "curve", "size", "first", "second")
METADATA = {"Date": None, "Creator": None}


class Curve:
    """The points of one curve, in the order of their sizes."""

    def __init__(self, name):
        self.name = name
        self.points = []

    def add(self, row):
        self.points.append((row["size"], row["first"], row["second"]))
        self.points.sort()

    def column(self, index):
        return [point[index] for point in self.points]


class Plot:
    """The curves with the same axes."""

    def __init__(self, texts):
        self.name = texts["plot"]
        self.size = texts["size"]
        self.values = [texts["first"], texts["second"]]
        self.curves = {}

    def add(self, curve, row):
        self.curves.setdefault(curve, Curve(curve)).add(row)


def collect(rows):
    """The plots that the benchmark's rows belong to, by name; rows of other kinds are passed over."""
    plots = {}
    for row in rows:
        texts = row.get("label", "").split("|")
        if "size" not in row or "error_message" in row or len(texts) != len(FIELDS):
            continue
        named = dict(zip(FIELDS, texts))
        plots.setdefault(named["plot"], Plot(named)).add(named["curve"], row)
    return plots


def show_number(value, _position=None):
    """A size as users write it: 0.3, 128, 10 k, 1 M."""
    for unit, letter in ((1e6, " M"), (1e3, " k")):
        if value >= unit * (10 if letter == " k" else 1):
            return f"{value / unit:g}{letter}"
    return f"{value:g}"


def draw_axes(axes, plot, index):
    """One panel: a value of all curves against size."""
    sizes = set()
    for curve, colour in zip(plot.curves.values(), COLOURS):
        axes.plot(curve.column(0), curve.column(index + 1), marker="o", markersize=3.5,
                  linewidth=1.4, color=colour, label=curve.name)
        sizes.update(curve.column(0))
    axes.set_xscale("log")
    axes.set_xticks(sorted(sizes))
    axes.xaxis.set_major_formatter(ticker.FuncFormatter(show_number))
    axes.xaxis.set_minor_locator(ticker.NullLocator())
    scale_values(axes, [value for curve in plot.curves.values()
                        for value in curve.column(index + 1)], len(plot.curves))
    axes.set_xlabel(plot.size)
    axes.set_title(plot.values[index], loc="left", fontsize=9)
    axes.grid(True, axis="y", color="#dddddd", linewidth=0.6)
    axes.set_axisbelow(True)


def scale_values(axes, values, curves):
    """From 0, so that a flat curve looks flat; logarithmic if the values span decades. Leaves room
    for a line of the legend for each curve."""
    if min(values) > 0 and max(values) / min(values) > 50:
        axes.set_yscale("log")
        axes.yaxis.set_minor_locator(ticker.NullLocator())
        axes.yaxis.set_major_formatter(ticker.FuncFormatter(show_number))
    else:
        axes.set_ylim(0, max(values) * (1.15 if curves == 1 else 1.15 + 0.15 * curves))


def draw_plot(plot, path):
    figure, panels = pyplot.subplots(1, 2, figsize=(7.6, 2.7), facecolor="white")
    for index, axes in enumerate(panels):
        draw_axes(axes, plot, index)
    if len(plot.curves) > 1:
        panels[0].legend(frameon=False, fontsize=8)
    figure.tight_layout(w_pad=2.5)
    figure.savefig(path, format="svg", metadata=METADATA)
    pyplot.close(figure)


def draw(rows, folder):
    """Draws the plots of the rows of Google Benchmark's JSON into the folder, as
    performance-NAME.svg, and returns the paths. Raises ValueError if there is no curve in them."""
    plots = collect(rows)
    if not plots:
        raise ValueError("no row of bench_growth found: expected rows with the counter \"size\"")
    paths = []
    for name, plot in sorted(plots.items()):
        paths.append(Path(folder) / f"performance-{name}.svg")
        draw_plot(plot, paths[-1])
    return paths
