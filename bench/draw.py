"""Draws what run.py measured: RESULTS.json becomes RESULTS-calls.svg, RESULTS-grid.svg, ..."""
import json
import sys

import matplotlib

matplotlib.use("svg")
# The same results give the same file, byte for byte.
matplotlib.rcParams.update({"svg.hashsalt": "vantiro", "svg.fonttype": "none", "font.size": 9})
import matplotlib.pyplot as plt

results = sys.argv[1]
with open(results) as file:
    rows = json.load(file)["rows"]
OURS, OVER, GREY = "#2b6cb0", "#c05621", "#a0aec0"


def save(figure, name):
    figure.savefig(f"{results[:-len('.json')]}-{name}.svg", bbox_inches="tight",
                   facecolor="white", metadata={"Date": None})


def bars(axes, chosen, goal, title, limits=None):
    """Ratios with their quartiles; behind each the quartiles of a function against itself."""
    noise = {row["name"][:-len(" (noise)")]: row for row in chosen if "(noise)" in row["name"]}
    shown = [row for row in chosen if "(noise)" not in row["name"]]
    for place, row in enumerate(shown):
        error = [[row["ratio"] - row["low"]], [row["high"] - row["ratio"]]]
        color = OURS if row["ratio"] <= goal else OVER
        if row["name"] in noise:
            itself = noise[row["name"]]
            axes.barh(place, itself["high"] - itself["low"], left=itself["low"], height=0.85,
                      color="#e2e8f0")
        axes.errorbar(row["ratio"], place, xerr=error, fmt="o", ms=5, color=color, capsize=3)
    axes.axvline(1, color=GREY, linewidth=1)
    axes.axvline(goal, color=OVER, linewidth=1, linestyle="--", label=f"goal: {goal}")
    axes.set_yticks(range(len(shown)), [row["name"] for row in shown])
    axes.set_ylim(len(shown) - 0.5, -0.5)
    if limits:
        ratios = [row["ratio"] for row in shown]
        axes.set_xlim(min(limits[0], min(ratios) - 0.02), max(limits[1], max(ratios) + 0.02))
    axes.set_title(title)
    axes.set_xlabel("time by the library / time by hand")
    axes.legend(loc="lower right")


def of(kind):
    return [row for row in rows if row["set"] == kind]


def draw_calls():
    figure, (left, right) = plt.subplots(1, 2, figsize=(11, 6), sharey=True)
    bars(left, of("real"), 1.02, "on a real Java runtime", (0.85, 1.15))
    bars(right, of("null"), 1.05, "on a runtime that does next to nothing", (0.85, 1.15))
    save(figure, "calls")


def draw_threads():
    figure, axes = plt.subplots(figsize=(6, 2.6))
    bars(axes, of("threads") + of("start"), 1.02, "threads that call at once, and the start",
         (0.8, 1.2))
    save(figure, "threads")


def draw_grid():
    figure, axes = plt.subplots(figsize=(7, 4))
    for kind, name in (("project", "a project"), ("peach", "a parallel-each run")):
        shown = of(kind)
        axes.plot([row["jobs"] for row in shown], [row["ours"] for row in shown], "o-", label=name)
    reference = of("project")
    axes.plot([row["jobs"] for row in reference], [row["theirs"] for row in reference], "s--",
              color=OVER, label="GNU parallel --results")
    axes.plot([row["jobs"] for row in reference], [row["xargs"] for row in reference], "^:",
              color=GREY, label="xargs -P, which keeps nothing")
    axes.set_xscale("log")
    axes.set_xticks([row["jobs"] for row in reference],
                    [f"{row['jobs']:,}" for row in reference])
    axes.minorticks_off()
    axes.set_xlabel("jobs")
    axes.set_ylabel("milliseconds for a job, all in all")
    axes.set_title("The local grid: cost of a job that prints a number")
    axes.legend(loc="upper right")
    axes.set_ylim(0, 1.35 * axes.get_ylim()[1])
    save(figure, "grid")


def draw_alternatives():
    figure, axes = plt.subplots(figsize=(7, 3))
    bars(axes, of("jpype"), 0.95, "our Python client and JPype", (0, 1.4))
    axes.set_xlabel("time by our client / time by JPype")
    save(figure, "jpype")


for needed, draw in (("real", draw_calls), ("threads", draw_threads), ("project", draw_grid),
                     ("jpype", draw_alternatives)):
    if of(needed):
        draw()
