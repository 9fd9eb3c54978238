"""What an installation puts beside the programs, as desktops and packages read it."""

import os
import re
import struct
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree
from email.utils import parsedate_to_datetime
from pathlib import Path

from desktop import PREFIX, run

PACKAGING = Path(os.environ["VELARC_PACKAGING"])
SHARE = PREFIX / "share"
METAINFO = SHARE / "metainfo" / "com.tolmar.velarc.metainfo.xml"
ICONS = SHARE / "icons" / "hicolor"


def newest_release():
    """Version and day, from the newest entry of the changelog."""
    text = (PACKAGING / "debian" / "changelog").read_text(encoding="utf-8")
    version = re.match(r"velarc \(([0-9.]+)\)", text)[1]
    return version, parsedate_to_datetime(re.search(r"^ -- .*>  (.*)$", text, re.MULTILINE)[1])


def size_of(png):
    data = png.read_bytes()
    return struct.unpack(">II", data[16:24])


class InstalledFiles(unittest.TestCase):
    def test_every_program_tells_the_version_of_the_changelog(self):
        for program in ["velarc", "velarc-cli", "velarc-share"]:
            self.assertEqual(run(program, "--version"),
                             (0, f"{program} {newest_release()[0]}\n", ""))

    def test_the_metainfo_tells_the_same_release(self):
        version, day = newest_release()
        release = ElementTree.parse(METAINFO).find("releases/release")
        self.assertEqual((release.get("version"), release.get("date")),
                         (version, day.strftime("%Y-%m-%d")))

    def test_the_metainfo_is_valid_to_the_last_hint(self):
        done = subprocess.run(["appstreamcli", "validate", "--no-net", "--pedantic", METAINFO],
                              capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertNotRegex(done.stdout, "(?m)^[EWIP]: ")

    def test_the_desktop_file_is_valid(self):
        done = subprocess.run(["desktop-file-validate",
                               SHARE / "applications" / "com.tolmar.velarc.desktop"],
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    def test_the_icon_comes_in_every_size_and_to_scale(self):
        for size in [16, 22, 24, 32, 48, 64, 96, 128, 256, 512]:
            picture = ICONS / f"{size}x{size}" / "apps" / "com.tolmar.velarc.png"
            self.assertEqual(size_of(picture), (size, size))
        self.assertIn("<svg", (ICONS / "scalable/apps/com.tolmar.velarc.svg").read_text())

    def test_licence_and_notices_are_there(self):
        folder = SHARE / "doc" / "velarc"
        self.assertIn("MIT License", (folder / "LICENSE").read_text(encoding="utf-8"))
        notices = (folder / "THIRD_PARTY_NOTICES.md").read_text(encoding="utf-8")
        carried = (PACKAGING.parent / "src/ui/icons/LICENSE").read_text(encoding="utf-8")
        for paragraph in carried.split("\n\n"):
            words = " ".join(paragraph.split())
            self.assertIn(words, " ".join(notices.replace("\n>", " ").split()))


if __name__ == "__main__":
    unittest.main()
