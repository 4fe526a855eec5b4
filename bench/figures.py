"""Measures every row and every curve, prints the table, and writes docs/performance.md and its plot.

usage: figures.py [--quick] [--rounds N] [--only WORD] [--no-page]
"""

import argparse
import datetime
import os
import platform
import sys
from pathlib import Path

import curves
import rows
from machine import ROOT, Missing, workplace
from plot import plot

PAGE = ROOT / "docs/performance.md"
PLOT = ROOT / "docs/performance.svg"
BEGIN, END = "<!-- figures -->", "<!-- end of figures -->"


class Bench:
    """What the rows are told about the run."""

    def __init__(self, work, options):
        self.work, self.rounds = work, options.rounds
        self.quick, self.walk_root = options.quick, options.walk_root

    def place(self, name):
        place = self.work / name
        (place / "temp").mkdir(parents=True, exist_ok=True)
        return place

    def silent(self, installer):
        return (installer, "-vs:silent", "-vs:tempdir", self.work / "temp")

    def sizes(self, *all_sizes):
        return all_sizes[:3] if self.quick else all_sizes


def options_of(arguments):
    parser = argparse.ArgumentParser(prog="bench/run")
    parser.add_argument("--quick", action="store_true", help="few rounds, no page, no large sizes")
    parser.add_argument("--rounds", type=int, help="how often each pair is measured (11)")
    parser.add_argument("--only", metavar="WORD", help="only the rows whose function has the word")
    parser.add_argument("--no-page", action="store_true", help="print the table and write nothing")
    parser.add_argument("--walk-root", default="/", help="where the walk begins (/)")
    options = parser.parse_args(arguments)
    options.rounds = options.rounds or (3 if options.quick else 11)
    return options


def mark(row):
    return "" if row.met is None else "yes" if row.met else "**no**"


def as_line(row):
    return f"| {row.what} | {row.yardstick} | {row.value} | {row.target} | {mark(row)} |"


def measured(bench, wanted):
    """All rows, and what could not be measured here."""
    found, skipped = [], []
    for function in rows.ALL:
        if wanted and wanted not in function.__name__:
            continue
        try:
            for row in function(bench):
                found.append(row)
                print(as_line(row), flush=True)
        except Missing as reason:
            skipped.append(f"{function.__name__.replace('_', ' ')}: {reason}")
            print(f"skipped: {skipped[-1]}", flush=True)
    return found, skipped


def drawn_curves(bench, wanted):
    drawn = []
    for function in curves.ALL:
        if wanted and wanted not in function.__name__:
            continue
        drawn.append(function(bench))
        print(drawn[-1].title, drawn[-1].points, flush=True)
    return drawn


def machine():
    model = "an unknown processor"
    for line in Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
        if line.startswith("model name"):
            model = line.split(":", 1)[1].strip()
            break
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") >> 30
    return f"{os.cpu_count()} × {model}, {memory} GiB, Linux {platform.release()}"


def page_text(bench, found, skipped, drawn):
    date = datetime.datetime.now(datetime.timezone.utc).strftime("%d %B %Y")
    lines = [f"Measured on {date}: {machine()}. {bench.rounds} rounds, medians, the middle half of "
             "the rounds in parentheses.", "",
             "| what | yardstick in the same run | measured | target | met |", "|---|---|---|---|---|"]
    lines += [as_line(row) for row in found]
    lines += ["", "Bars of the ratios, and growth over size (both axes logarithmic, dashed: linear):",
              "", "![ratios and growth](performance.svg)", ""]
    if skipped:
        lines += ["Not measured on this machine: " + "; ".join(skipped) + ".", ""]
    return "\n".join(lines)


def write_page(text):
    page = PAGE.read_text(encoding="utf-8")
    head, rest = page.split(BEGIN, 1)
    tail = rest.split(END, 1)[1]
    PAGE.write_text(f"{head}{BEGIN}\n{text}{END}{tail}", encoding="utf-8")


def main(arguments):
    options = options_of(arguments)
    with workplace() as work:
        bench = Bench(work, options)
        found, skipped = measured(bench, options.only)
        drawn = drawn_curves(bench, options.only)
    if not (options.quick or options.only or options.no_page):
        write_page(page_text(bench, found, skipped, drawn))
        PLOT.write_text(plot(found, drawn), encoding="utf-8")
    missed = [row.what for row in found if row.met is False]
    print(f"{len(found)} rows, {len(missed)} targets missed")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
