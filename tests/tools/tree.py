"""A small source tree in a temporary folder, to hold a check of tools/ against."""

import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tools"))


class TreeTest(unittest.TestCase):
    """Gives each test an empty tree."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="velarc tree ")
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def write(self, name, text=""):
        file = self.root / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        return file
