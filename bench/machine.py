"""What the benchmarks run on and with: commands, rounds, installers and file systems."""

import contextlib
import itertools
import os
import shutil
import statistics
import struct
import subprocess
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BIN = ROOT / "build/bench/bin"
SHARE = ROOT / "build/bench/share"
LAUNCHER = BIN / "launcher"
ENVIRONMENT = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "LANG": "C", "LC_ALL": "C",
               "HOME": os.environ.get("HOME", "/")}


class Missing(Exception):
    """What a machine lacks for a row."""


def has(program):
    return shutil.which(program) is not None


def need(program):
    found = shutil.which(program)
    if not found:
        raise Missing(f"no {program}")
    return found


def run(*command, **options):
    """A step of the preparation: it must work."""
    return subprocess.run([str(part) for part in command], check=True, env=ENVIRONMENT,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          **options).stdout


class Cost:
    """Milliseconds of CPU and of the clock for one run of a command, and its peak in kB."""

    def __init__(self, cpu, elapsed, memory):
        self.cpu, self.elapsed, self.memory = cpu, elapsed, memory


def measure(command, count=1, cwd=None):
    words = [str(part) for part in (BIN / "measure", count, *command)]
    output = subprocess.run(words, check=True, cwd=cwd, env=ENVIRONMENT, text=True,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    cpu, elapsed, memory = output.split()
    return Cost(float(cpu) / 1000, float(elapsed) / 1000, int(memory))


class Contender:
    """A command, what is done before each round, and how often a round runs it."""

    def __init__(self, *command, before=None, count=1, cwd=None):
        self.command, self.before, self.count, self.cwd = command, before, count, cwd

    def works(self):
        try:
            self.once()
        except subprocess.CalledProcessError:
            return False
        return True

    def once(self):
        if self.before:
            self.before()
        return measure(self.command, self.count, self.cwd)


class Rounds:
    """All costs of contenders that took turns, so that noise hits each."""

    def __init__(self, rounds, **contenders):
        self.costs = {name: [] for name in contenders}
        for contender in contenders.values():  # the caches are warm, or as warm as they get
            contender.once()
        names = list(contenders)
        for number in range(rounds):
            for name in names if number % 2 == 0 else reversed(names):
                self.costs[name].append(contenders[name].once())

    def values(self, name, what):
        return [getattr(cost, what) for cost in self.costs[name]]

    def median(self, name, what="elapsed"):
        return statistics.median(self.values(name, what))

    def ratios(self, name, other, what="cpu"):
        pairs = zip(self.values(name, what), self.values(other, what))
        return Spread([mine / max(theirs, 1e-6) for mine, theirs in pairs])

    def differences(self, name, other, what="elapsed"):
        pairs = zip(self.values(name, what), self.values(other, what))
        return Spread([mine - theirs for mine, theirs in pairs])

    def peak(self, name):
        return max(self.values(name, "memory"))


class Spread:
    """The median of the rounds and their middle half."""

    def __init__(self, values):
        self.median = statistics.median(values)
        quarters = statistics.quantiles(values, n=4) if len(values) > 1 else values * 3
        self.low, self.high = quarters[0], quarters[2]

    def text(self, form="{:.2f}"):
        return (form + " (" + form + " to " + form + ")").format(self.median, self.low, self.high)


class Installer:
    """A launcher file, made without vspack, so that its form is the row's own choice."""

    KINDS = {"instructions": 0, "jvm": 1, "launch": 2, "archive": 3, "verification": 5,
             "application": 6}

    def __init__(self, path):
        self.path = Path(path)
        self.files = []

    def add(self, kind, number, name, data):
        self.files.append((self.KINDS[kind], number, name, data))
        return self

    def script(self, *statements):
        lines = "".join(f"  {statement}\n" for statement in statements)
        return self.add("instructions", 1, "script", f"INSTRUCTIONS:\n{lines}/:\n".encode())

    def write(self, align=4096):
        """Large files at multiples of `align`, as vspack packs them, or anywhere with 1."""
        index = struct.pack(">I", len(self.files))
        with open(self.path, "wb") as out:
            out.write(LAUNCHER.read_bytes())
            if align == 1:
                out.write(b"\0" * ((1 - out.tell()) % 4096))  # never by chance
            for kind, number, name, data in self.files:
                if len(data) >= 65536:
                    out.write(b"\0" * (-out.tell() % align))
                index += struct.pack(">BIIIH", kind, number, len(data), out.tell(), len(name))
                index += name.encode() + b"\0"
                out.write(data)
            out.write(index + b"\0" + struct.pack(">II", out.tell(), 0xCA82CA82))
        self.path.chmod(0o755)
        return self.path


def blob(size):
    """Bytes that nothing can compress or share by chance."""
    return os.urandom(1 << 20) * (size >> 20) + os.urandom(size & ((1 << 20) - 1))


@contextlib.contextmanager
def workplace():
    with tempfile.TemporaryDirectory(prefix="vessant-bench-") as name:
        (Path(name) / "temp").mkdir()
        yield Path(name)


@contextlib.contextmanager
def loop_device(kind, megabytes):
    """A fresh file system of its own in a file, for root."""
    if os.geteuid() != 0:
        raise Missing(f"only root can make a file system of the kind {kind}")
    need(f"mkfs.{kind}")
    options = {"xfs": ["-q", "-m", "reflink=1"], "btrfs": ["-q"], "ext4": ["-q", "-F"]}[kind]
    with tempfile.TemporaryDirectory(prefix="vessant-bench-") as name:
        image, mount = Path(name) / "image", Path(name) / "mount"
        mount.mkdir()
        with open(image, "wb") as file:
            file.truncate(megabytes << 20)
        try:
            run(f"mkfs.{kind}", *options, image)
            run("mount", "-o", "loop", image, mount)
        except subprocess.CalledProcessError as error:
            raise Missing(f"no {kind} in a loop device: {error.stdout.strip()}") from None
        try:
            (mount / "temp").mkdir()
            yield mount
        finally:
            run("umount", "-l", mount)


@contextlib.contextmanager
def sharing_file_system(megabytes):
    """A file system that shares blocks."""
    reasons = []
    for kind in ("xfs", "btrfs"):
        stack = contextlib.ExitStack()
        try:
            mount = stack.enter_context(loop_device(kind, megabytes))
        except Missing as reason:
            reasons.append(str(reason))
            continue
        with stack:
            yield mount
        return
    raise Missing("; ".join(reasons))


def empty(directory):
    """What puts a directory back to empty before a round."""
    def clear():
        shutil.rmtree(directory, ignore_errors=True)
        os.mkdir(directory)
    return clear


def fresh(directory):
    """What puts an empty directory there before a round and keeps the old one: where files were
    just deleted, ext4 passes over their inodes one by one for some seconds."""
    numbers = itertools.count()

    def replace():
        if directory.exists():
            directory.rename(directory.with_name(f"{directory.name}-{next(numbers)}"))
        os.mkdir(directory)
    return replace


def settled(directory):
    """The same as `empty`, and nobody waits for what another has still to write."""
    clear = empty(directory)

    def settle():
        clear()
        os.sync()
    return settle
