"""Programs that may not have more than 200 MB of memory.

A scope of the user's manager limits it, or a control group of the test's own where the user may make
one.
"""

import os
import subprocess
import unittest
from pathlib import Path

from faults import BIN, JOKE, FaultTest

LIMIT = 200_000_000
GROUPS = Path("/sys/fs/cgroup")


class Scope:
    command = ["systemd-run", "--user", "--scope", "--quiet", f"--property=MemoryMax={LIMIT}",
               "--property=MemorySwapMax=0"]

    @staticmethod
    def enter():
        pass

    def close(self):
        pass


class ControlGroup:
    command = []

    def __init__(self, parent, setting):
        self._folder = parent / f"velarc-{os.getpid()}"
        self._folder.mkdir()
        try:
            with open(self._folder / setting, "r+", encoding="ascii") as file:  # the kernel's
                file.write(str(LIMIT))
        except OSError:
            self.close()
            raise

    def enter(self):
        """In the process that is to be limited."""
        (self._folder / "cgroup.procs").write_text(str(os.getpid()))

    def close(self):
        self._folder.rmdir()


def limit_of_memory():
    try:
        if subprocess.run([*Scope.command, "true"], capture_output=True,
                          check=False).returncode == 0:
            return Scope()
    except FileNotFoundError:
        pass
    for parent, setting in [(GROUPS, "memory.max"),
                            (GROUPS / "memory", "memory.limit_in_bytes")]:
        try:
            return ControlGroup(parent, setting)
        except OSError:
            pass
    return None


class LittleMemory(FaultTest):
    @classmethod
    def setUpClass(cls):
        cls.limit = limit_of_memory()
        if cls.limit is None:
            raise unittest.SkipTest("no scope or control group can be had that limits memory")
        cls.addClassCleanup(cls.limit.close)

    def start(self, program, *arguments, **options):
        return self.adopt(subprocess.Popen(
            [*self.limit.command, BIN / program, *arguments], preexec_fn=self.limit.enter,
            stderr=subprocess.PIPE, **options))

    def run_on(self, text):
        """Status, standard output and standard error of a run in the terminal."""
        process = self.start("velarc-cli", "run", JOKE, "-", stdin=subprocess.PIPE,
                             stdout=subprocess.PIPE)
        out, err = process.communicate(text, timeout=60)
        return process.returncode, out, err

    def test_the_terminal_answers(self):
        status, out, err = self.run_on(b"cats")
        self.assertEqual((status, err), (0, b""))
        self.assertIn(b"cats", out)

    def test_a_text_of_eight_megabytes_is_answered(self):
        text = b"The ferry was late. " * 400_000
        status, out, err = self.run_on(text)
        self.assertEqual((status, err), (0, b""))
        self.assertGreater(len(out), len(text))

    def test_a_text_that_is_too_large_for_the_memory_costs_nothing_but_its_run(self):
        status, out, _ = self.run_on(b"The ferry was late. " * 5_000_000)
        self.assertNotEqual(status, 0)  # the system ends it
        self.assertEqual(out, b"")
        self.expect_all_well()

    def test_the_window_works(self):
        self.expect_window_works(self.start("velarc", stdin=subprocess.DEVNULL))
        self.expect_all_well()


if __name__ == "__main__":
    unittest.main()
