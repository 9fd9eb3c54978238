"""A disk without room, and a store that another process holds."""

import os
import shutil
import sqlite3
import subprocess
import tempfile
import time
import unittest
from contextlib import contextmanager
from pathlib import Path

from faults import (JOKE, WINDOW_NAME, WINDOW_PATH, FaultTest, call, mounted, run, wait_until)

HOME = Path(os.environ["HOME"])
PAGE = 4096
CLOCK_NANOSLEEP = {"x86_64": 230, "aarch64": 115}[os.uname().machine]
LONG = "VELARC_LONG" in os.environ


def fill_the_disk(filler):
    with open(filler, "wb", buffering=0) as file:
        try:
            while file.write(bytes(PAGE)):
                pass
        except OSError:
            pass


class FullDisk(FaultTest):
    @contextmanager
    def full_disk(self):
        """The home on a disk of its own, which a file fills to the last byte."""
        with tempfile.TemporaryDirectory() as kept:
            shutil.copytree(HOME, kept, dirs_exist_ok=True)
            with mounted(HOME, "-t", "tmpfs", "-o", "size=4m", "none"):
                shutil.copytree(kept, HOME, dirs_exist_ok=True)
                filler = HOME / "filler"
                fill_the_disk(filler)
                yield filler
                self.end_programs()
                filler.unlink(missing_ok=True)
                self.expect_all_well()

    def test_the_library_is_the_users_on_a_full_disk(self):
        with self.full_disk():
            self.assertEqual(run("velarc-cli", "actions"), (0, self.listed, ""))

    def test_the_terminal_answers_on_a_full_disk(self):
        with self.full_disk():
            status, out, err = run("velarc-cli", "run", JOKE, "cats")
            self.assertEqual((status, err), (0, ""))
            self.assertIn("cats", out)

    def test_a_result_that_finds_no_room_is_told_and_leaves_no_half(self):
        with self.full_disk():
            target = HOME / "answer.txt"
            target.touch()
            status, out, err = run("velarc-cli", "run", JOKE, "c" * 5000, "--output", str(target))
            self.assertEqual((status, out), (1, ""))
            self.expect_sentence(err)
            self.assertEqual(target.read_bytes(), b"")
            self.assertEqual([path.name for path in HOME.iterdir() if path.is_file()],
                             ["answer.txt", "filler"])

    def test_a_text_that_finds_no_room_is_not_said_to_be_shared(self):
        with self.full_disk():
            status, out, err = run("velarc-share", "cats " * 4000)
            self.assertEqual((status, out), (1, ""))
            self.expect_sentence(err, "velarc-share")

    def test_an_event_that_finds_no_room_is_told(self):
        with self.full_disk():
            status, out, err = run("velarc-cli", "run", "Create Calendar Event",
                                   "title: Dentist\nstart: 2030-03-04 09:00")
            self.assertEqual((status, out), (1, ""))
            self.expect_sentence(err)

    def test_a_window_starts_on_a_full_disk_and_shows_what_is_there(self):
        with self.full_disk():
            window = self.start_window()
            self.select(self.action(JOKE))
            call(WINDOW_NAME, WINDOW_PATH, "org.freedesktop.DBus.Peer.Ping")
            self.assertIsNone(window.poll())

    def test_a_window_over_which_the_disk_runs_full_writes_again_once_there_is_room(self):
        with self.full_disk() as filler:
            filler.unlink()
            window = self.start_window()
            self.select_and_see(self.keep)
            fill_the_disk(filler)
            self.select(self.action(JOKE))
            call(WINDOW_NAME, WINDOW_PATH, "org.freedesktop.DBus.Peer.Ping")
            filler.unlink()
            self.select_and_see(self.action("Meal Planning & Recipe"))
            self.expect_window_works(window)


class LockedStore(FaultTest):
    @contextmanager
    def held(self):
        """Another process' lock on the whole store, until the block ends."""
        holder = sqlite3.connect(self.store.file, timeout=10, isolation_level=None)
        holder.execute("BEGIN IMMEDIATE")
        try:
            yield
        finally:
            holder.execute("ROLLBACK")
            holder.close()

    def wait_until_it_waits(self, process):
        """Until its main thread sleeps between two tries to get the lock."""
        state = Path(f"/proc/{process.pid}/syscall")
        wait_until(lambda: state.read_text().startswith(f"{CLOCK_NANOSLEEP} "), "its waiting")

    def test_a_run_of_the_terminal_waits_for_a_store_that_is_held(self):
        with self.held():
            process = self.launch("velarc-cli", "run", JOKE, "cats", stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE)
            self.wait_until_it_waits(process)
        out, err = process.communicate(timeout=30)
        self.assertEqual((process.returncode, err), (0, b""))
        self.assertIn(b"cats", out)
        self.expect_all_well()

    def test_what_the_window_writes_waits_for_a_store_that_is_held(self):
        window = self.start_window()
        with self.held():
            self.select(self.keep)
            self.wait_until_it_waits(window)
        wait_until(lambda: self.selected() == self.keep, "the selection in the store")
        self.expect_window_works(window)
        self.expect_all_well()

    @unittest.skipUnless(LONG, "VELARC_LONG is not set: holding a store takes its time")
    def test_both_programs_go_on_without_a_store_that_is_held_for_too_long(self):
        window = self.start_window()
        with self.held():
            self.select(self.keep)
            began = time.monotonic()
            call(WINDOW_NAME, WINDOW_PATH, "org.freedesktop.DBus.Peer.Ping")
            print(f"the window answered after {time.monotonic() - began:.1f} s")
            status, out, err = run("velarc-cli", "run", JOKE, "cats")
            print(f"the terminal after {time.monotonic() - began:.1f} s")
        self.assertEqual((status, err), (0, ""))
        self.assertIn("cats", out)
        self.expect_window_works(window)
        self.expect_all_well()


if __name__ == "__main__":
    unittest.main()
