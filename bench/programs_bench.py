#!/usr/bin/env python3
"""What whole programs cost, from their start to their end: processor time and peak memory.

Usage: programs_bench.py BIN_FOLDER [RUNS]

Beside each stands what an empty program costs that is linked to the same libraries: what is above
that is our own. Medians, with the quartiles behind them. The kernel counts a program's memory from
that of this script upwards, which is told first.
"""

import os
import resource
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path


def environment(folder, **changes):
    """That of a user who has nothing: no home but the folder, no bus, no display."""
    kept = {name: os.environ[name] for name in ("PATH", "LANG") if name in os.environ}
    return {**kept, "HOME": str(folder), "XDG_RUNTIME_DIR": str(folder),
            "QT_QPA_PLATFORM": "offscreen", **changes}


def cost(command, env):
    """Processor time in ms and peak memory in MB of one run of a command that must succeed."""
    nowhere = [(os.POSIX_SPAWN_OPEN, stream, os.devnull, os.O_RDWR, 0) for stream in (0, 1, 2)]
    process = os.posix_spawn(command[0], command, env, file_actions=nowhere)
    _, status, usage = os.wait4(process, 0)
    if status != 0:
        raise RuntimeError(f"{command} ended with {status}")
    return (usage.ru_utime + usage.ru_stime) * 1000, usage.ru_maxrss / 1024


def own_memory():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024


def measure(name, command, env, runs):
    cost(command, env)  # the first run finds nothing in the caches, and makes the store
    times, memories = zip(*(cost(command, env) for _ in range(runs)))
    low, middle, high = statistics.quantiles(times, n=4)
    print(f"{name:44} {middle:7.1f} ms  ({low:.1f} to {high:.1f})"
          f" {statistics.median(memories):7.1f} MB")
    return middle


def libraries(program):
    """The shared libraries that a program is linked to itself."""
    lines = subprocess.run(["readelf", "--dynamic", program], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    return [line.split("[")[1].rstrip("]") for line in lines if "(NEEDED)" in line]


def make_empty_twin(program, folder):
    """A program that only makes Qt's application object, linked to the same libraries."""
    source = folder / "empty.cpp"
    is_window = any("Qt6Gui" in name for name in libraries(program))
    kind = "QGuiApplication" if is_window else "QCoreApplication"
    source.write_text(f"#include <{kind}>\n"
                      f"int main(int argc, char **argv) {{ {kind} application(argc, argv); }}\n")
    flags = subprocess.run(["pkg-config", "--cflags", "Qt6Gui" if is_window else "Qt6Core"],
                           capture_output=True, text=True, check=False).stdout.split()
    twin = folder / f"empty-{program.name}"
    subprocess.run(["c++", "-O2", "-fPIC", *(flags or qt_includes()), source, "-o", twin,
                    "-Wl,--no-as-needed", *(f"-l:{name}" for name in libraries(program))],
                   check=True)
    return twin


def qt_includes():
    """Where Debian keeps Qt's headers: it has no pkg-config files of Qt."""
    machine = subprocess.run(["c++", "-print-multiarch"], check=True, capture_output=True,
                             text=True).stdout.strip()
    folder = f"/usr/include/{machine}/qt6"
    return [f"-I{folder}", f"-I{folder}/QtCore", f"-I{folder}/QtGui"]


def measure_command_line(folder, bin_folder, runs):
    env = environment(folder)
    cli = bin_folder / "velarc-cli"
    empty = measure("an empty program with velarc-cli's libraries",
                    [make_empty_twin(cli, folder)], env, runs)
    whole = measure("velarc-cli run, local engine, \"hello\"",
                    [cli, "run", "Tell Me a Joke", "hello"], env, runs)
    print(f"{'':44} {whole / empty:7.2f} times the empty program")
    measure("velarc-cli actions", [cli, "actions"], env, runs)


def measure_second_start(folder, bin_folder, runs):
    """Without a bus, and over one if dbus-daemon is there to make it."""
    window = bin_folder / "velarc"
    measure_forwarding("a second start of velarc, without a bus", window,
                       environment(folder), runs)
    bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"],
                           stdout=subprocess.PIPE, text=True, env=environment(folder))
    try:
        address = bus.stdout.readline().strip()
        measure_forwarding("a second start of velarc, over the bus", window,
                           environment(folder, DBUS_SESSION_BUS_ADDRESS=address), runs)
    finally:
        bus.terminate()
        bus.communicate()


def measure_forwarding(name, window, env, runs):
    first = subprocess.Popen([window], env=env, stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL)
    try:
        wait_for_window(window, env)
        measure(name, [window, "velarc://share-handoff"], env, runs)
    finally:
        first.kill()
        first.wait()


def wait_for_window(window, env):
    """A second start ends at once when the first one listens, and takes its place before that."""
    for _ in range(50):
        try:
            subprocess.run([window], env=env, check=True, timeout=5, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            return
        except subprocess.TimeoutExpired:
            continue
    raise RuntimeError("the window does not listen")


def main():
    bin_folder = Path(sys.argv[1]).resolve()
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 40
    print(f"{'this script':44} {'':28} {own_memory():7.1f} MB")
    with tempfile.TemporaryDirectory(dir="/tmp") as folder:
        measure_command_line(Path(folder), bin_folder, runs)
        if (bin_folder / "velarc").exists():
            measure_second_start(Path(folder), bin_folder, runs)


if __name__ == "__main__":
    main()
