"""How the cost grows with the size of what is read: one curve for each kind."""

import os

from machine import (BIN, LAUNCHER, Contender, Installer, Missing, Rounds, run)
from rows import write_tags


class Curve:
    """Milliseconds of CPU over sizes."""

    def __init__(self, title, unit, points):
        self.title, self.unit, self.points = title, unit, points


def cost(bench, *command):
    rounds = Rounds(max(3, bench.rounds // 4), it=Contender(*command))
    return rounds.median("it", "cpu")


def walks(bench):
    """Directories in groups of a thousand, in memory, so that only the walk is measured."""
    place = bench.work / "walked"
    place.mkdir()
    if os.geteuid() == 0:
        run("mount", "-t", "tmpfs", "-o", "size=4g,nr_inodes=0", "none", place)
    points, made = [], 0
    try:
        for thousands in bench.sizes(1, 10, 100, 1000):
            while made < thousands:
                group = place / f"group{made}"
                group.mkdir()
                for number in range(999):
                    os.mkdir(group / f"d{number}")
                made += 1
            points.append((thousands, cost(bench, BIN / "walk", place)))
    finally:
        if os.geteuid() == 0:
            run("umount", "-l", place)
    return Curve("walk", "thousand directories", points)


def tag_files(bench):
    points = []
    for megabytes in bench.sizes(1, 3, 10, 30, 100):
        path = bench.work / "tags"
        write_tags(path, megabytes)
        points.append((megabytes, cost(bench, LAUNCHER, "-vs:silent", "-vs:in", path)))
        path.unlink()
    return Curve("tag file", "MB", points)


def statements(bench):
    points = []
    for thousands in bench.sizes(1, 10, 100, 1000):
        path = Installer(bench.work / "script").script(
            *['SET S1 = "value @N1@"'] * (thousands * 1000)).write()
        points.append((thousands, cost(bench, *bench.silent(path))))
    return Curve("script", "thousand statements", points)


def index_entries(bench):
    points = []
    for files in bench.sizes(1, 10, 100, 1000, 10000, 30000):
        installer = Installer(bench.work / "many").script("SET N1 = 0")
        for number in range(files):
            installer.add("application", number + 2, f"file{number}", b"x")
        points.append((files, cost(bench, *bench.silent(installer.write()))))
    return Curve("index", "files", points)


ALL = [walks, tag_files, statements, index_entries]

__all__ = ["ALL", "Curve", "Missing"]
