"""The ways to the window: by address, by a second start, by the bus and without one."""

import os
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from desktop import (BIN, HANDOFF_KEY, HANDOFF_URL, HAS_BUS, PREFIX, RESULT_KEY, RESULT_URL,
                     WINDOW_NAME, WINDOW_PATH, DesktopTest, Store, call, environment, handoff,
                     listens, owner_process, processes, run, start, wait_until)

JOKE = "Tell Me a Joke"


def open_with(program, url):
    """As the desktop's own commands open an address. One of them wants to see a display."""
    command = {"gio": ["gio", "open", url], "xdg-open": ["xdg-open", url]}[program]
    return subprocess.Popen(command, stdin=subprocess.DEVNULL, env=environment(DISPLAY=":99"))


class EveryWay(DesktopTest):
    """What holds with a bus and without one."""

    def test_text_starts_the_window_where_none_runs(self):
        joke = self.action(JOKE)
        self.assertEqual(run("velarc-share", "--action", JOKE, "cats"), (0, "", ""))
        self.window()
        self.wait_for_run_of(joke)
        self.assertIsNone(self.store.read(HANDOFF_KEY))

    def test_text_reaches_the_window_that_runs(self):
        window = self.launch_window()
        self.assertEqual(run("velarc-share", "--action", JOKE, "cats"), (0, "", ""))
        self.wait_for_run_of(self.action(JOKE))
        self.expect_processes(window)

    def test_second_start_hands_its_address_over_and_ends(self):
        window = self.launch_window()
        self.store.write(HANDOFF_KEY, handoff("cats", self.action(JOKE)))
        self.assertEqual(run("velarc", HANDOFF_URL), (0, "", ""))
        self.wait_for_run_of(self.action(JOKE))
        self.expect_processes(window)

    def test_first_start_takes_its_address_up_itself(self):
        self.store.write(HANDOFF_KEY, handoff("cats", self.action(JOKE)))
        window = self.launch("velarc", "VELARC://SHARE-HANDOFF/")
        self.wait_for_run_of(self.action(JOKE))

    def test_five_starts_at_once_give_one_window(self):
        starters = [start("velarc") for _ in range(5)]
        self.expect_one_window_after(starters)
        self.end_programs()
        for starter in starters:
            starter.wait()

    def test_killed_window_leaves_room_for_the_next(self):
        window = self.launch_window()
        os.kill(window.pid, signal.SIGKILL)
        self.assertEqual(run("velarc-share", "--action", JOKE, "cats"), (0, "", ""))
        self.wait_for_run_of(self.action(JOKE))
        self.assertNotEqual(self.window(), window.pid)

    def test_windows_of_two_runtime_folders_know_nothing_of_each_other(self):
        with tempfile.TemporaryDirectory(dir="/tmp") as folder:
            home, runtime = Path(folder) / "home", Path(folder) / "run"
            home.mkdir()
            runtime.mkdir(mode=0o700)
            other = environment(HOME=str(home), XDG_RUNTIME_DIR=str(runtime),
                                XDG_DATA_HOME=str(home / "data"), XDG_CONFIG_HOME=None,
                                XDG_STATE_HOME=None, XDG_CACHE_HOME=None,
                                DBUS_SESSION_BUS_ADDRESS=None)
            mine = self.launch_window()
            theirs = self.launch("velarc", env=other)
            wait_until(lambda: listens(runtime), "the other window")
            self.assertEqual(run("velarc-share", "to the other", env=other), (0, "", ""))
            theirs_store = Store(home / "data")
            wait_until(theirs_store.recent_action, "the run in the other window")
            self.assertIsNone(self.store.recent_action())
            self.expect_processes(mine, theirs)


@unittest.skipUnless(HAS_BUS, "this session has no bus")
class ByTheDesktop(DesktopTest):
    """The desktop's own commands, and the bus that starts programs."""

    def expect_handoff_through(self, program):
        self.store.write(HANDOFF_KEY, handoff("cats", self.action(JOKE)))
        opener = self.adopt(open_with(program, HANDOFF_URL))
        self.wait_for_run_of(self.action(JOKE))
        if program == "gio":
            self.assertEqual(opener.wait(), 0)
        else:
            self.end_programs()  # it waits for the program that it has started

    def test_gio_open_starts_the_window(self):
        self.expect_handoff_through("gio")
        self.assertEqual(owner_process(WINDOW_NAME), self.window())

    def test_xdg_open_starts_the_window(self):
        self.expect_handoff_through("xdg-open")

    def test_gio_open_reaches_the_window_that_runs(self):
        window = self.launch_window()
        self.expect_handoff_through("gio")
        self.expect_processes(window)

    def test_xdg_open_reaches_the_window_that_runs(self):
        window = self.launch_window()
        self.store.write(HANDOFF_KEY, handoff("cats", self.action(JOKE)))
        opener = self.adopt(open_with("xdg-open", HANDOFF_URL))
        self.assertEqual(opener.wait(), 0)
        self.wait_for_run_of(self.action(JOKE))
        self.expect_processes(window)

    def test_bus_starts_the_window_and_shows_it(self):
        call(WINDOW_NAME, WINDOW_PATH, "org.freedesktop.Application.Activate", "@a{sv} {}")
        self.assertEqual(owner_process(WINDOW_NAME), self.window())

    def test_chosen_action_is_selected(self):
        joke = self.action(JOKE)
        call(WINDOW_NAME, WINDOW_PATH, "org.freedesktop.Application.ActivateAction",
             "'select-action'", f"[<'{joke}'>]", "@a{sv} {}")
        wait_until(lambda: self.store.layout().get("selectedActionID") == joke, "the selection")

    def test_address_with_a_result_shows_it_and_leaves_the_record(self):
        self.assertEqual(run("velarc-share", "--result", "--action-name", "Elsewhere", "done"),
                         (0, "", ""))
        self.window()
        self.assertIsNotNone(self.store.read(RESULT_KEY))
        self.assertIsNone(self.store.recent_action())

    def test_object_tells_what_it_can_do(self):
        told = subprocess.run(["gdbus", "introspect", "--session", "--dest", WINDOW_NAME,
                               "--object-path", WINDOW_PATH], capture_output=True, text=True,
                              check=True).stdout
        for line in ["interface org.freedesktop.Application", "Activate(in  a{sv} platform_data)",
                     "interface com.tolmar.velarc.Window1", "Copy(in  s type,"]:
            self.assertIn(line, told)


class Mistakes(DesktopTest):
    def test_surplus_argument_is_a_usage_error(self):
        status, out, err = run("velarc", "one", "two")
        self.assertEqual((status, out), (2, ""))
        self.assertEqual(err, 'velarc: Surplus argument: "two".\nTry "velarc --help".\n')

    def test_help_and_version_need_no_display(self):
        bare = environment(QT_QPA_PLATFORM=None, DISPLAY=None, WAYLAND_DISPLAY=None)
        self.assertEqual(run("velarc", "--version", env=bare)[0], 0)
        self.assertIn("Usage: velarc", run("velarc", "--help", env=bare)[1])

    def test_missing_display_is_told_and_crashes_nothing(self):
        bare = environment(QT_QPA_PLATFORM=None, DISPLAY=None, WAYLAND_DISPLAY=None)
        self.assertEqual(run("velarc", env=bare),
                         (1, "", "velarc: There is no display to open a window on.\n"))

    def test_text_that_finds_no_window_is_kept(self):
        bare = environment(QT_QPA_PLATFORM=None, DISPLAY=None, WAYLAND_DISPLAY=None,
                           DBUS_SESSION_BUS_ADDRESS=None, XDG_RUNTIME_DIR=None, PATH="/nowhere",
                           XDG_DATA_DIRS="/nowhere")
        self.assertEqual(run("velarc-share", "cats", env=bare),
                         (1, "", "velarc-share: The window could not be opened. The text is kept "
                                 "until velarc://share-handoff is.\n"))
        self.assertIn(b"cats", self.store.read(HANDOFF_KEY))


if __name__ == "__main__":
    unittest.main()
