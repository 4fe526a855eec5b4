"""Loads, each with the figures that it took and what must hold at its end."""

import os
import struct
import subprocess
import sys
import time

from machine import BIN, ENVIRONMENT, LAUNCHER, Installer, blob, workplace


class Load:
    def __init__(self, work):
        self.work, self.failures = work, 0
        self.temp = work / "temp"

    def silent(self, path):
        return [path, "-vs:silent", "-vs:tempdir", self.temp]

    def report(self, what, seconds, memory, holds):
        self.failures += 0 if holds else 1
        print(f"| {what} | {seconds:.2f} s | {memory / 1024:.1f} MB | {'yes' if holds else 'NO'} |",
              flush=True)

    def once(self, what, command, holds=lambda result: result.returncode == 0, cwd=None):
        words = [str(part) for part in command]
        start = time.monotonic()
        result = subprocess.run(words, cwd=cwd or self.work, env=ENVIRONMENT, capture_output=True,
                                text=True, check=False)
        seconds = time.monotonic() - start
        memory = peak_of(words, cwd or self.work)
        self.report(what, seconds, memory, holds(result) and not os.listdir(self.temp))


def peak_of(words, cwd):
    """A run of its own, because only a small parent leaves a child's peak its own."""
    output = subprocess.run([str(BIN / "measure"), "1", *words], cwd=cwd, env=ENVIRONMENT, text=True,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False).stdout
    return int((output.split() or ["0"])[-1])


def launching(path, command, *more):
    """An installer whose script launches the command with a JVM that is only a description."""
    installer = Installer(path).script("ILAUNCH 3 0")
    installer.add("jvm", 3, "java.jvm", b"DESC: x\nJVM_HOME: /usr\nJVM_EXE: bin/true\n"
                  b'CLASSPATH: "-cp "\nCLASSPATH_SEPARATOR: ":"\n')
    installer.add("launch", 2, "launch",
                  f"DESC: x\nDISPLAY_CONSOLE: 1\nCOMMAND: {command}\n".encode())
    for file in more:
        installer.add(*file)
    return installer


def many_at_once(load):
    """All share one temporary root and one log; each must come through and write whole lines."""
    count = 50
    data = blob(2 << 20)
    path = launching(load.work / "shared", "test -s %APPLICATION_ARCHIVE%()",
                     ("application", 5, "app.jar", data)).write()
    log = load.work / "shared.log"
    command = [str(part) for part in (*load.silent(path), "-vs:log", log)]
    start = time.monotonic()
    running = [subprocess.Popen(command, env=ENVIRONMENT) for _ in range(count)]
    statuses = [process.wait() for process in running]
    seconds = time.monotonic() - start
    lines = log.read_text(encoding="utf-8", errors="replace").splitlines()
    begun = sum(line == "------------------" for line in lines)
    holds = not any(statuses) and begun == count and not os.listdir(load.temp)
    load.report(f"{count} installers at once, one temporary root, one log", seconds, 0, holds)


def largest_file(load):
    """3.9 GB, most of it a hole in the file."""
    path = load.work / "large"
    size = 3900 * 1000 * 1000
    script = b"INSTRUCTIONS:\n  SET N1 = 0\n/:\n"
    with open(path, "wb") as out:
        out.write(LAUNCHER.read_bytes())
        begin = out.tell()
        out.seek(size)
        out.write(script)
        index = struct.pack(">I", 2)
        for kind, number, length, offset, name in ((6, 2, size - begin, begin, b"hole"),
                                                   (0, 1, len(script), size, b"script")):
            index += struct.pack(">BIIIH", kind, number, length, offset, len(name)) + name + b"\0"
        offset = out.tell()
        out.write(index + b"\0" + struct.pack(">II", offset, 0xCA82CA82))
    path.chmod(0o755)
    load.once("a launcher file of 3.9 GB: reading its index", load.silent(path))
    place = load.work / "extracted"
    place.mkdir()
    load.once("the same: extracting all of it", [path, "-vs:silent", "-vs:extract"], cwd=place,
              holds=lambda result: result.returncode == 0
              and (place / "hole").stat().st_size == size - begin)
    (place / "hole").unlink(missing_ok=True)
    path.unlink()


def long_script(load):
    path = Installer(load.work / "script").script(*['SET S1 = "@S1@"'] * 100000).write()
    load.once("a script of 100,000 statements", load.silent(path))


def large_tag_file(load):
    path = load.work / "tags"
    with open(path, "w", encoding="ascii") as out:
        for number in range(2500000):
            out.write(f"TAG_{number:012d}: twenty bytes of text.\n"[:40])
        out.write("ACTION: NONE\n")
    # Only who has read the file to its last line knows that there is no such action.
    load.once("a tag file of 100 MB", [LAUNCHER, "-vs:in", path],
              holds=lambda result: "Invalid action in input file: NONE" in result.stdout)
    path.unlink()


def long_class_path(load):
    """A command is one argument of the shell, for which the kernel takes no more than 128 KiB: with
    more archives the launch fails, with the status that a shell has for what it cannot start."""
    for count, status in ((1000, 0), (10000, 127)):
        archives = [("archive", number + 10, f"a{number}", b"x") for number in range(count)]
        path = launching(load.work / "archives", "set -- %CP%(); test $# -ge 1", *archives).write()
        load.once(f"{count:,} class path archives, status {status}", load.silent(path),
                  holds=lambda result, wanted=status: result.returncode == wanted)


def main():
    print("| load | time | peak memory | as it should be |\n|---|---|---|---|")
    with workplace() as work:
        load = Load(work)
        for step in (many_at_once, largest_file, long_script, large_tag_file, long_class_path):
            step(load)
    return 1 if load.failures else 0


if __name__ == "__main__":
    sys.exit(main())
