"""The command line and the clipboard of an X server, with and without a window that runs."""

import os
import subprocess
import unittest

import shell_test
from desktop import DesktopTest, run, wait_until


def copy(text, *options):
    subprocess.run(["xclip", "-in", "-selection", "clipboard", *options], input=text, check=True,
                   stdout=subprocess.DEVNULL, timeout=20)


def pasted(*options):
    return subprocess.run(["xclip", "-out", "-selection", "clipboard", *options], check=True,
                          capture_output=True, timeout=20).stdout.decode()


def keepers():
    found = []
    for folder in os.listdir("/proc"):
        try:
            with open(f"/proc/{folder}/cmdline", "rb") as file:
                words = file.read().split(b"\0")
        except OSError:
            continue
        if words[0].startswith(os.fsencode(os.environ["VELARC_PREFIX"])) and b"keep" in words:
            found.append(int(folder))
    return found


class CliClipboard(DesktopTest):
    store_copying_action = shell_test.Shell.store_copying_action

    def setUp(self):
        super().setUp()
        self.store_copying_action()
        copy(b"from elsewhere")

    def test_clipboard_is_read_where_the_prompt_asks_for_it(self):
        status, out, err = run("velarc-cli", "run", "Copying", "cats")
        self.assertEqual((status, err), (0, ""))
        self.assertIn("cats", out)

    def test_clipboard_fills_its_place_in_the_input(self):
        status, out, _ = run("velarc-cli", "run", "Copying", "say {Clipboard}")
        self.assertEqual(status, 0)
        self.assertIn("from elsewhere", out)

    def test_copy_outlives_the_program_until_somebody_else_copies(self):
        status, out, err = run("velarc-cli", "run", "Copying", "\u00fcber cats")
        self.assertEqual((status, err), (0, ""))
        self.assertEqual(pasted() + "\n", out)
        self.assertEqual(len(keepers()), 1)
        copy(b"other")
        wait_until(lambda: not keepers(), "the end of the process that kept the copy")
        self.assertEqual(pasted(), "other")

    def test_later_copy_takes_the_place_of_the_earlier_and_of_its_keeper(self):
        run("velarc-cli", "run", "Copying", "one")
        _, out, _ = run("velarc-cli", "run", "Copying", "two")
        wait_until(lambda: len(keepers()) == 1, "the end of the first keeper")
        self.assertEqual(pasted() + "\n", out)
        copy(b"end")
        wait_until(lambda: not keepers(), "the end of the second keeper")

    def test_window_that_runs_copies_itself(self):
        window = self.launch_window()
        status, out, err = run("velarc-cli", "run", "Copying", "cats")
        self.assertEqual((status, err), (0, ""))
        self.assertEqual(pasted() + "\n", out)
        self.assertEqual(keepers(), [])
        self.expect_processes(window)

    def test_server_that_is_not_there_is_no_clipboard(self):
        nowhere = {**os.environ, "DISPLAY": ":987"}
        status, out, err = run("velarc-cli", "run", "Copying", "cats {Clipboard}", env=nowhere)
        self.assertEqual(status, 0)
        self.assertIn("cats", out)
        self.assertEqual(err, "velarc-cli: There is no clipboard to copy the result to.\n")


if __name__ == "__main__":
    unittest.main()
