"""How the window ends and comes back, under a window manager and beside a clipboard manager.

The places are in VELARC and VELARC_DEMO.
"""

import ctypes
import json
import os
import subprocess
import unittest
from pathlib import Path

from desktop_window import BUTTON, AccessibilityBus, Window, WindowTest, clipboard, wait_for

X11 = ctypes.CDLL("libX11.so.6")
X11.XOpenDisplay.restype = ctypes.c_void_p
X11.XOpenDisplay.argtypes = X11.XCloseDisplay.argtypes = [ctypes.c_void_p]
X11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
X11.XGetSelectionOwner.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
DEMO = os.environ["VELARC_DEMO"]
STATE = Path(os.environ["XDG_STATE_HOME"]) / "velarc" / "window.json"


def setUpModule():
    bus = AccessibilityBus()
    unittest.addModuleCleanup(bus.close)
    manager = daemon("openbox", "--sm-disable")
    unittest.addModuleCleanup(manager.wait)
    unittest.addModuleCleanup(manager.terminate)
    wait_for("the window manager", manager_window)


def daemon(*command):
    return subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def root_property(name, window=None):
    place = ["-id", window] if window else ["-root"]
    return subprocess.run(["xprop", *place, name], capture_output=True, text=True,
                          check=False).stdout


def manager_window():
    words = root_property("_NET_SUPPORTING_WM_CHECK").split()
    return words[-1] if words and words[-1].startswith("0x") else None


class EndingTest(WindowTest):
    def close_by_manager(self):
        """As the cross in its title bar does."""
        number = hex(int(self.window.identifier()))
        subprocess.run(["wmctrl", "-i", "-c", number], check=True)

    def expect_clean_end(self):
        status, said = self.window.end()
        self.assertEqual(status, 0)
        self.assertIn(said, ("", self.tolerated))


class ByTheWindowManager(EndingTest):
    def test_closing_ends_the_process(self):
        self.close_by_manager()
        self.expect_clean_end()

    def test_closing_with_an_open_sheet_ends_the_process(self):
        self.window.press("More", BUTTON)
        self.window.find("Usage")
        self.close_by_manager()
        self.expect_clean_end()

    def test_the_size_is_remembered_beside_the_store(self):
        resized = ["xdotool", "windowsize", "--sync", self.window.identifier(), "900", "640"]
        subprocess.run(resized, check=True)
        self.close_by_manager()
        self.expect_clean_end()
        kept = json.loads(STATE.read_text(encoding="utf-8"))
        self.assertEqual((kept["width"], kept["height"]), (900, 640))
        self.window = Window(self.program)
        told = subprocess.run(["xdotool", "getwindowgeometry", self.window.identifier()],
                              capture_output=True, text=True, check=True).stdout
        self.assertIn("Geometry: 900x640", told)
        STATE.unlink()

    def test_a_minimised_window_is_raised_by_a_second_start(self):
        number = self.window.identifier()
        subprocess.run(["xdotool", "windowminimize", "--sync", number], check=True)
        wait_for("the minimised window", lambda: "_HIDDEN" in self.state_of(number))
        subprocess.run([self.program], check=True, timeout=20)
        wait_for("the raised window", lambda: "_HIDDEN" not in self.state_of(number))
        wait_for("its focus", lambda: subprocess.run(
            ["xdotool", "getactivewindow"], capture_output=True, check=False,
            text=True).stdout.strip() == number)

    @staticmethod
    def state_of(number):
        return root_property("_NET_WM_STATE", number)

    def test_a_log_out_remembers_the_size_too(self):
        STATE.unlink(missing_ok=True)
        self.assertEqual(self.window.close(), (0, ""))
        self.assertIn("width", json.loads(STATE.read_text(encoding="utf-8")))


class WhileItRuns(EndingTest):
    program = DEMO

    def test_closing_stops_the_run_and_ends_the_process(self):
        self.select("Answer Slowly")
        self.start_run("text")
        self.window.find("Cancel", BUTTON)
        self.close_by_manager()
        self.expect_clean_end()  # in a moment: the answer would take half a minute


class Clipboard(EndingTest):
    def copy_result(self):
        self.run_to_result()
        return self.press_and_paste_elsewhere("Copy")

    def test_a_clipboard_manager_has_the_copy_when_the_window_has_closed(self):
        # This manager takes the copy, but does not say so.
        self.tolerated = ("qt.qpa.clipboard: QXcbClipboard: Unable to receive an event from the "
                          "clipboard manager in a reasonable time\n")
        manager = daemon("xfce4-clipman")
        self.addCleanup(manager.wait)
        self.addCleanup(manager.terminate)
        wait_for("the clipboard manager", lambda: has_owner("CLIPBOARD_MANAGER"))
        copied = self.copy_result()
        self.close_by_manager()
        self.expect_clean_end()
        wait_for("the copy in the manager's hands", lambda: clipboard().decode() == copied)

    def test_without_a_manager_the_copy_goes_with_the_window(self):
        self.copy_result()
        self.close_by_manager()
        self.expect_clean_end()
        self.assertEqual(clipboard(), b"")


def has_owner(selection):
    """Whether a program answers for a selection of the display."""
    display = X11.XOpenDisplay(None)
    try:
        return X11.XGetSelectionOwner(display, X11.XInternAtom(display, selection.encode(), 0)) != 0
    finally:
        X11.XCloseDisplay(display)


if __name__ == "__main__":
    unittest.main()
