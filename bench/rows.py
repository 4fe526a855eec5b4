"""The rows of the table: each measures one thing against its yardstick in the same run."""

import os
import shutil
from pathlib import Path

from machine import (BIN, LAUNCHER, SHARE, Contender, Installer, Missing, Rounds, blob, empty,
                     fresh, has, loop_device, need, run, settled, sharing_file_system)

MEGABYTE = 1 << 20


class Row:
    """A line of the table. `ratio` is what the plot shows, with its target."""

    def __init__(self, what, yardstick, value, target, met, ratio=None, limit=None):
        self.what, self.yardstick, self.value = what, yardstick, value
        self.target, self.met, self.ratio, self.limit = target, met, ratio, limit

    @staticmethod
    def ratio_row(what, yardstick, spread, target):
        return Row(what, yardstick, spread.text(), f"≤ {target:.2f}", spread.median <= target,
                   spread.median, target)

    @staticmethod
    def difference_row(what, yardstick, spread, target):
        return Row(what, yardstick, spread.text("{:+.1f} ms"), f"≤ +{target} ms",
                   spread.median <= target)

    @staticmethod
    def peer(what, yardstick, spread):
        return Row(what, yardstick, spread.text(), "a peer", None, spread.median)


def copied(bench, program):
    """A program as a download leaves it. A linker writes a file in pieces, which the kernel keeps
    in small ones and maps more slowly."""
    return Path(shutil.copy(program, bench.work))


def bare_launcher(bench):
    rounds = Rounds(bench.rounds,
                    launcher=Contender(copied(bench, LAUNCHER), "-vs:version", count=200),
                    empty=Contender(copied(bench, BIN / "empty"), count=200))
    yield Row.ratio_row("`-vs:version`, whole process, CPU", "an empty static C program",
                        rounds.ratios("launcher", "empty"), 1.10)


def long_launcher(bench):
    big = Installer(bench.work / "long").add("application", 1, "big", blob(200 * MEGABYTE)).write()
    rounds = Rounds(bench.rounds, long=Contender(big, "-vs:version", count=100),
                    bare=Contender(copied(bench, LAUNCHER), "-vs:version", count=100))
    yield Row.ratio_row("the same with 200 MB of files behind it, CPU", "the bare launcher",
                        rounds.ratios("long", "bare"), 1.02)
    big.unlink()


def executable_size(_bench):
    size = LAUNCHER.stat().st_size
    yield Row("the executable, stripped, 27 languages in", "–", f"{size:,} bytes",
              "≤ 1,000,000", size <= 1000000)


def extraction_rounds(bench, place, align, yardstick, **others):
    """One file of 200 MB: the installer's, a copy's, and others'."""
    data = blob(200 * MEGABYTE)
    (place / "big").write_bytes(data)
    installer = Installer(place / "installer").add("application", 1, "big", data).write(align)
    out = place / "out"
    contenders = {name: Contender(*command(out), before=empty(out), cwd=place)
                  for name, command in others.items()}
    return Rounds(
        bench.rounds, cp=Contender(*yardstick, place / "big", out / "big", before=empty(out)),
        launcher=Contender(BIN / "inside", out, installer, "-vs:silent", "-vs:extract",
                           before=empty(out)), **contenders)


def extraction(bench):
    place = bench.place("extraction")
    for align, name, target in ((1, "anywhere", 1.0), (4096, "aligned", 0.9)):
        rounds = extraction_rounds(bench, place, align, ["cp"])
        for what in ("cpu", "elapsed"):
            yield Row.ratio_row(f"extraction of 200 MB, lying {name}, {label(what)}", "`cp`",
                                rounds.ratios("launcher", "cp", what), target)


def label(what):
    return {"cpu": "CPU", "elapsed": "elapsed"}[what]


def extraction_peers(bench):
    place = bench.place("peers")
    (place / "files").mkdir()
    data = blob(200 * MEGABYTE)
    (place / "files/big").write_bytes(data)
    run("tar", "-cf", place / "files.tar", "-C", place / "files", "big")
    peers = {"tar": lambda out: ("tar", "-xf", place / "files.tar", "-C", out)}
    if has("makeself"):
        run("makeself", "--nocomp", "--nox11", place / "files", place / "made", "files", "true")
        peers["makeself"] = lambda out: (place / "made", "--noexec", "--target", out)
    rounds = extraction_rounds(bench, place, 4096, ["cp"], **peers)
    for name in peers:
        for what in ("cpu", "elapsed"):
            yield Row.peer(f"extraction of 200 MB by {name}, {label(what)}", "`cp`",
                           rounds.ratios(name, "cp", what))


def extraction_sharing(bench):
    with sharing_file_system(1400) as place:
        rounds = extraction_rounds(bench, place, 4096, ["cp", "--reflink=never"])
        for what in ("cpu", "elapsed"):
            yield Row.ratio_row(f"the same where the file system shares blocks, {label(what)}",
                                "`cp --reflink=never`", rounds.ratios("launcher", "cp", what), 0.05)


def many_files(bench):
    with loop_device("ext4", 1000) as place:
        source, out = place / "source", place / "out"
        source.mkdir()
        installer = Installer(place / "installer")
        for number in range(200):
            data = os.urandom(50000)
            (source / f"file{number}").write_bytes(data)
            installer.add("application", number + 1, f"file{number}", data)
        installer.write()
        anew = fresh(out)
        rounds = Rounds(
            bench.rounds, cp=Contender("cp", "-r", source, out / "copy", before=anew, count=1),
            launcher=Contender(BIN / "inside", out, place / "installer", "-vs:silent",
                               "-vs:extract", before=anew))
        for what in ("cpu", "elapsed"):
            yield Row.ratio_row(f"extraction of 200 files of 50 KB, {label(what)}",
                                "`cp -r`, on a fresh file system",
                                rounds.ratios("launcher", "cp", what), 0.90)


def walk(bench):
    top = bench.walk_root
    contenders = {"launcher": Contender(BIN / "walk", top),
                  "find": Contender("find", top, "-path", "*/bin/java")}
    if has("bfs"):
        contenders["bfs"] = Contender("bfs", top, "-path", "*/bin/java")
    fd = "fdfind" if has("fdfind") else "fd" if has("fd") else None
    if fd:
        # In /proc it does not come to an end.
        left_out = [word for place in ("/proc", "/sys") for word in ("--exclude", place)]
        contenders["fd"] = Contender(fd, "-HI", "-j1", "-p", "/bin/java$", top, *left_out)
    for peer in ("bfs", "fd"):
        if peer in contenders and not contenders[peer].works():
            del contenders[peer]
    rounds = Rounds(bench.rounds, **contenders)
    yield Row.ratio_row(f"the walk of {top} for `bin/java`, CPU", "GNU find",
                        rounds.ratios("launcher", "find"), 0.52)
    for name in ("bfs", "fd"):
        if name in contenders:
            less = ", without /proc and /sys" if name == "fd" else ""
            what = f"the same by {name}{less}, CPU"
            yield Row.peer(what, "GNU find", rounds.ratios(name, "find"))
    memory = {name: rounds.peak(name) / 1024 for name in contenders}
    others = ", ".join(f"{name} {memory[name]:.1f} MB" for name in contenders if name != "launcher")
    yield Row("its peak memory", others, f"{memory['launcher']:.1f} MB", "≤ 2 MB",
              memory["launcher"] <= 2)


JVM_FILE = """DESC: Java
JVM_HOME: {home}
PATH_HINT: {home}
JVM_PROPERTIES: java.version=>1
JVM_EXE: bin/java
CLASSPATH: "-cp "
CLASSPATH_SEPARATOR: ":"
SYSTEM: -D
SYSTEM_SEPARATOR: =
"""


def java_home():
    java = Path(need("java")).resolve()
    if not (SHARE / "verify.jar").exists():
        raise Missing("no JDK to make verify.jar")
    return java.parent.parent


def with_java(path, launch_command, script, console=1):
    home = java_home()
    installer = Installer(path).script(*script)
    installer.add("jvm", 3, "java.jvm", JVM_FILE.format(home=home).encode())
    installer.add("verification", 4, "verify.jar", (SHARE / "verify.jar").read_bytes())
    command = launch_command.replace("JAVA", f"{home}/bin/java")
    text = f"DESC: x\nDISPLAY_CONSOLE: {console}\nCOMMAND: {command}\n"
    return installer.add("launch", 2, "launch", text.encode())


def verification(bench):
    home = java_home()
    path = with_java(bench.work / "verify", "true", ["VERIFY 0 0 3"]).write()
    plain = (home / "bin/java", "-cp", SHARE / "verify.jar", "Verify", "java.version")
    rounds = Rounds(bench.rounds, launcher=Contender(*bench.silent(path), count=5),
                    java=Contender(*plain, count=5))
    yield Row.difference_row("one verification, elapsed, beyond the bare command",
                             f"`java -cp verify.jar …` {rounds.median('java'):.0f} ms",
                             rounds.differences("launcher", "java"), 3)


def launches(bench):
    home = java_home()
    plain = (home / "bin/java", "-cp", SHARE / "verify.jar", "Verify", "java.version")
    command = f"JAVA -cp {SHARE}/verify.jar Verify java.version"
    captured = with_java(bench.work / "captured", command, ["ILAUNCH 3 0"], console=0).write()
    rounds = Rounds(bench.rounds, launcher=Contender(*bench.silent(captured), count=5),
                    java=Contender(*plain, count=5))
    yield Row.difference_row("a captured launch beyond plain `java`",
                             f"`java` {rounds.median('java'):.0f} ms",
                             rounds.differences("launcher", "java"), 4)
    direct = with_java(bench.work / "direct", "/bin/true", ["ILAUNCH 3 0"]).write()
    rounds = Rounds(bench.rounds, launcher=Contender(*bench.silent(direct), count=20),
                    shell=Contender("sh", "-c", "/bin/true", count=20))
    yield Row.difference_row("an uncaptured launch", "`sh -c` alone",
                             rounds.differences("launcher", "shell"), 3)


def start_rounds(bench, place, **others):
    """A program in a jar of 200 MB that lies behind the launcher, and behind nothing."""
    home = java_home()
    jar = place / "big.jar"
    if not jar.exists():
        shutil.copy(SHARE / "verify.jar", jar)
        (place / "ballast").write_bytes(blob(200 * MEGABYTE))
        run(need("jar"), "--update", "--no-compress", "--file", jar, "-C", place, "ballast")
        (place / "ballast").unlink()
    arguments = "Verify java.version"
    path = with_java(place / "start", f"JAVA -cp %APPLICATION_ARCHIVE%() {arguments}",
                     ["ILAUNCH 3 0"])
    path = path.add("application", 5, "big.jar", jar.read_bytes()).write()
    plain = (home / "bin/java", "-cp", jar, *arguments.split())
    silent = (path, "-vs:silent", "-vs:tempdir", place / "temp")
    return Rounds(bench.rounds, launcher=Contender(*silent), java=Contender(*plain), **others)


def start(bench):
    place = bench.place("start")
    rounds = start_rounds(bench, place)
    yield Row.difference_row("start of a program with a 200 MB application archive",
                             f"plain `java` {rounds.median('java'):.0f} ms",
                             rounds.differences("launcher", "java"), 90)


def start_peer(bench):
    need("makeself")
    place = bench.place("start")
    (place / "made").mkdir(exist_ok=True)
    if not (place / "big.jar").exists():
        raise Missing("no jar of 200 MB")
    shutil.move(place / "big.jar", place / "made/big.jar")
    run("makeself", "--nocomp", "--nox11", place / "made", place / "peer", "start",
        java_home() / "bin/java", "-cp", "big.jar", "Verify", "java.version")
    plain = (java_home() / "bin/java", "-cp", place / "made/big.jar", "Verify", "java.version")
    rounds = Rounds(bench.rounds, peer=Contender(place / "peer", "--nochown"),
                    java=Contender(*plain))
    yield Row("the same start by makeself", "plain `java`",
              rounds.differences("peer", "java").text("{:+.1f} ms"), "a peer", None)


def start_sharing(bench):
    with sharing_file_system(1400) as place:
        rounds = start_rounds(bench, place)
        yield Row.difference_row("the same where the file system shares blocks",
                                 f"plain `java` {rounds.median('java'):.0f} ms",
                                 rounds.differences("launcher", "java"), 10)


def statements(bench):
    count = 200000
    short = Installer(bench.work / "script-short").script(":end").write()
    for name, line, target in (("SET", 'SET S1 = "value @N1@"', 3e6), ("JMP0", "JMP0 1 end", 5e6)):
        path = Installer(bench.work / f"script-{name}").script(*[line] * count, ":end").write()
        rounds = Rounds(bench.rounds, launcher=Contender(*bench.silent(path)),
                        short=Contender(*bench.silent(short)))
        speed = count / (rounds.differences("launcher", "short", "cpu").median / 1000)
        yield Row(f"{name} statements a second, read and run", "–", f"{speed / 1e6:.1f} million",
                  f"≥ {target / 1e6:.0f} million", speed >= target)


def tag_file(bench):
    path = bench.work / "tags"
    write_tags(path, 40)
    size = path.stat().st_size
    rounds = Rounds(bench.rounds, launcher=Contender(LAUNCHER, "-vs:silent", "-vs:in", path))
    speed = size / 1e6 / (rounds.median("launcher", "cpu") / 1000)
    yield Row("a tag file of 40 MB with a million tags", "–", f"{speed:.0f} MB/s", "≥ 100 MB/s",
              speed >= 100)
    times = rounds.peak("launcher") * 1024 / size
    yield Row("its peak memory", "the file", f"{times:.1f} × the file", "≤ 4 × the file",
              times <= 4)


def write_tags(path, megabytes):
    with open(path, "w", encoding="ascii") as out:
        for number in range(megabytes * 25000):
            out.write(f"TAG_{number:012d}: twenty bytes of text.\n"[:40])
        out.write("ACTION: NONE\n")


def packing(bench):
    place = bench.place("packing")
    names = []
    for number in range(4):
        (place / f"part{number}").write_bytes(blob(256 * MEGABYTE))
        names.append(place / f"part{number}")
    lines = "".join(f"  application {number + 1} {name}\n" for number, name in enumerate(names))
    (place / "pack.manifest").write_text(f"LAUNCHER: {LAUNCHER}\nFILES:\n{lines}/:\n")
    out = place / "out"
    (place / "join").write_text(f"#!/bin/sh\nexec cat {' '.join(map(str, names))} >{out}/all\n")
    (place / "join").chmod(0o755)
    rounds = Rounds(
        bench.rounds, cat=Contender(place / "join", before=settled(out)),
        vspack=Contender(BIN / "vspack", "pack", place / "pack.manifest", "-o", out / "all",
                         "--allow", "no-script", before=settled(out)))
    if not (out / "all").exists():
        raise Missing("vspack does not pack what the bench has made")
    for what in ("cpu", "elapsed"):
        yield Row.ratio_row(f"`vspack pack` of 1 GB, {label(what)}", "`cat` into one file",
                            rounds.ratios("vspack", "cat", what), 1.0)


ALL = [bare_launcher, long_launcher, executable_size, extraction, extraction_sharing,
       extraction_peers, many_files, walk, verification, launches, start, start_peer,
       start_sharing, statements, tag_file, packing]
