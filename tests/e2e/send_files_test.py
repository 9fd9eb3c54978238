"""What the file managers' "Send to Velarc" runs."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from desktop import PREFIX, DesktopTest, wait_until

SENDER = PREFIX / "libexec/velarc/velarc-send-files"
FIXTURES = Path(__file__).parent.parent / "fixtures"


def send(*files, cwd=None):
    return subprocess.run([SENDER, "Tester", *files], capture_output=True, text=True, check=False,
                          cwd=cwd, timeout=60)


class SendFiles(DesktopTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_text_of_files_is_run_on(self):
        (self.folder / "-a b.txt").write_text("first\n")
        (self.folder / "c'd.md").write_text("second\n")
        ended = send("-a b.txt", self.folder / "c'd.md", cwd=self.folder)
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        wait_until(self.store.recent_action, "the run")

    def test_file_without_text_shares_nothing(self):
        (self.folder / "picture.png").write_bytes(b"\x89PNG\0\0")
        ended = send(self.folder / "picture.png")
        self.assertEqual(ended.returncode, 1)
        self.assertEqual(ended.stderr,
                         'Send to Velarc: "picture.png" holds no text that can be read.\n')
        self.assertIsNone(self.store.read("velarc.share.pendingHandoff.v1"))

    def test_file_that_is_not_there_shares_nothing(self):
        self.assertEqual(send(self.folder / "gone.txt").returncode, 1)
        self.assertEqual(send(self.folder / "gone.pdf").returncode, 1)

    def test_blank_file_is_refused_with_the_reason(self):
        (self.folder / "blank.txt").write_text(" \n")
        ended = send(self.folder / "blank.txt")
        self.assertEqual((ended.returncode, ended.stderr),
                         (1, "Send to Velarc: The text is blank.\n"))


if __name__ == "__main__":
    unittest.main()
