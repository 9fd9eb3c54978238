#!/usr/bin/env python3
"""What the window costs: processor time to its first frame, memory once it is idle, and idling.

Usage: window_bench.py BIN_FOLDER [RUNS]

On the display that there is, in a session of its own: run it by tests/session/run_in_session.sh and
tests/session/run_under_xvfb.sh, as `./dev bench window` does. Beside the window stands an empty one
of Qt Quick on the same renderer, and one with a line of text: the first text of a process has the
system's fonts looked through. The programs take turns, so that what slows the machine down slows
all of them down. Medians, with the quartiles behind them.
"""

import json
import os
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time
import uuid
from pathlib import Path

FRAME = b"Frame rendered"
ACTIONS_KEY = "velarc.actions.v1"
MANY_ACTIONS = 10_000
IDLE_TIME = 30  # seconds
AIM_CPU, AIM_MEMORY, AIM_MANY, AIM_IDLE = 1.35, 1.5, 150, 20


def processor_time(process):
    """What all its threads have used so far, in ms."""
    process_clock = (~process.pid << 3) | 2  # as clock_getcpuclockid(3) gives it
    return time.clock_gettime(process_clock) * 1000


def memory(process):
    """Its share of the machine's memory, in MB: what it shares is divided by those who do."""
    for line in Path(f"/proc/{process.pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    raise RuntimeError("the kernel tells no share of the memory")


class Subject:
    """A program with a home of its own."""

    def __init__(self, name, command, home):
        self.name, self.command = name, command
        home.mkdir(parents=True)
        self.store = home / "data" / "velarc" / "group.com.tolmar.velarc.sqlite"
        self._environment = {
            **os.environ, "HOME": str(home), "XDG_DATA_HOME": str(home / "data"),
            "XDG_CONFIG_HOME": str(home / "config"), "XDG_CACHE_HOME": str(home / "cache"),
            "XDG_STATE_HOME": str(home / "state"),
            "QT_LOGGING_RULES": "qt.scenegraph.time.renderloop=true"}
        self.times, self.memories = [], []

    def start(self):
        """The process at its first frame, and the processor time until then."""
        process = subprocess.Popen(self.command, env=self._environment, stderr=subprocess.PIPE,
                                   stdout=subprocess.DEVNULL)
        for line in process.stderr:
            if FRAME in line:
                return process, processor_time(process)
        raise RuntimeError(f"{self.command} ended with {process.wait()} before its first frame")

    def measure(self):
        process, until_frame = self.start()
        try:
            time.sleep(1)
            self.times.append(until_frame)
            self.memories.append(memory(process))
        finally:
            self.end(process)

    def idle(self):
        """Processor time in ms of doing nothing."""
        process, _ = self.start()
        try:
            time.sleep(3)
            before = processor_time(process)
            time.sleep(IDLE_TIME)
            return processor_time(process) - before
        finally:
            self.end(process)

    @staticmethod
    def end(process):
        process.terminate()
        process.communicate()

    def tell(self):
        low, middle, high = statistics.quantiles(self.times, n=4)
        print(f"{self.name:36} {middle:7.1f} ms  ({low:.1f} to {high:.1f})"
              f" {statistics.median(self.memories):7.1f} MB")


def fill(store, count):
    """As many actions as that, made from those that are there."""
    with sqlite3.connect(store) as connection:
        row = connection.execute("SELECT value FROM defaults WHERE key = ?", [ACTIONS_KEY]).fetchone()
        pattern = json.loads(row[0])
        actions = list(pattern)
        while len(actions) < count:
            original = pattern[len(actions) % len(pattern)]
            actions.append({**original, "id": str(uuid.uuid4()).upper(), "isPinned": False,
                            "name": f"{original['name']} {len(actions)}"})
        connection.execute("UPDATE defaults SET value = ? WHERE key = ?",
                           [json.dumps(actions).encode(), ACTIONS_KEY])
    connection.close()


def verdict(name, value, aim, unit=""):
    word = "as aimed" if value <= aim else "MISSED"
    print(f"{name:36} {value:7.2f}{unit} (aim: {aim}{unit} at most, {word})")


def main():
    bin_folder = Path(sys.argv[1]).resolve()
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 15
    with tempfile.TemporaryDirectory(dir="/tmp") as folder:
        home = Path(folder)
        bare, window = bin_folder / "velarc_empty_window", bin_folder / "velarc"
        empty = Subject("an empty window", [bare], home / "empty")
        line = Subject("an empty window but for a line", [bare, "Velarc"], home / "line")
        usual = Subject("velarc, 22 actions", [window], home / "usual")
        large = Subject(f"velarc, {MANY_ACTIONS:,} actions", [window], home / "large")
        subjects = (empty, line, usual, large)
        for subject in subjects:
            subject.end(subject.start()[0])  # what is made once: the store, and Qt's caches
        fill(large.store, MANY_ACTIONS)
        large.end(large.start()[0])
        for _ in range(runs):
            for subject in subjects:
                subject.measure()
        for subject in subjects:
            subject.tell()
        judge(empty, usual, large)
        verdict(f"velarc, idle for {IDLE_TIME} s", usual.idle(), AIM_IDLE, " ms")


def judge(empty, usual, large):
    middle = statistics.median
    verdict("times the empty window's time", middle(usual.times) / middle(empty.times), AIM_CPU)
    verdict("times its memory", middle(usual.memories) / middle(empty.memories), AIM_MEMORY)
    verdict(f"{MANY_ACTIONS:,} actions, above 22",
            middle(large.times) - middle(usual.times), AIM_MANY, " ms")


if __name__ == "__main__":
    main()
