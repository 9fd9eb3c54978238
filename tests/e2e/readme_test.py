"""The lines of README.md for the terminal, as a newcomer copies them, with the offline engine."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from desktop import BIN, DesktopTest, environment

README = Path(os.environ["VELARC_README"])
DOCUMENTS = Path(os.environ["VELARC_FIXTURES"]) / "documents"


def lines_for_the_terminal():
    """The commands of the block under "In the terminal"; one goes over two lines."""
    section = README.read_text(encoding="utf-8").split("\n## In the terminal\n")[1]
    block = re.search(r"```sh\n(.*?)```", section, re.DOTALL)[1]
    return re.findall(r'(?:[^\n"]|"[^"]*")+', block)


class TerminalLines(DesktopTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "notes.txt").write_text("The ferry was late. The crew blamed the tide.\n")
        (self.folder / "meeting.md").write_text("Ada mends the pump by Friday.\n")
        shutil.copy(DOCUMENTS / "office.pdf", self.folder / "invoice.pdf")
        for command in ["git init --quiet", "git add notes.txt",
                        "echo 'Are you coming on Monday?' | xclip -in >/dev/null 2>&1"]:
            self.shell(command)

    def shell(self, command):
        done = subprocess.run(
            ["bash", "-o", "pipefail", "-c", command], cwd=self.folder, capture_output=True,
            text=True, check=False, timeout=60, env=environment(PATH=f"{BIN}:{os.environ['PATH']}"))
        self.assertEqual((done.returncode, done.stderr), (0, ""), command)
        return done.stdout

    def test_there_are_ten(self):
        self.assertEqual(len(lines_for_the_terminal()), 10)

    def test_each_works(self):
        for line in lines_for_the_terminal():
            with self.subTest(line):
                out = self.shell(line)
                file = re.search(r"(?:> |-o )(\w\S*)", line)
                if file:
                    out = (self.folder / file[1]).read_text()
                self.assertNotEqual(out.strip(), "")


if __name__ == "__main__":
    unittest.main()
