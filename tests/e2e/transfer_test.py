"""Actions that leave the library as a file and come back, beside the window and without it."""

import json
import os
import stat
import tempfile
import unittest
import uuid
from pathlib import Path

from desktop import WINDOW_NAME, DesktopTest, owner_process, run, wait_until

ACTIONS_KEY = "velarc.actions.v1"


class Transfer(DesktopTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(dir="/tmp")
        self.addCleanup(folder.cleanup)
        self.file = Path(folder.name) / "actions.json"

    def titles(self):
        return [entry["name"] for entry in json.loads(self.store.read(ACTIONS_KEY))]

    def write_new_action(self, name):
        self.file.write_text(json.dumps([{"id": str(uuid.uuid4()).upper(), "name": name}]))

    def test_export_is_taken_over_unchanged(self):
        self.assertEqual(run("velarc-cli", "export", "-o", self.file), (0, "", ""))
        self.assertEqual(stat.S_IMODE(os.stat(self.file).st_mode), 0o600)
        self.assertEqual(json.loads(run("velarc-cli", "export")[1]),
                         json.loads(self.file.read_text()))
        self.assertEqual(run("velarc-cli", "import", self.file), (0, "22 unchanged\n", ""))

    def test_window_keeps_what_is_imported_beside_it_and_what_it_changes_itself(self):
        self.launch("velarc")
        wait_until(lambda: owner_process(WINDOW_NAME), "the window")
        self.write_new_action("First")
        self.assertEqual(run("velarc-cli", "import", self.file), (0, "1 new\n", ""))
        self.write_new_action("Second")
        self.assertEqual(run("velarc-cli", "import", self.file), (0, "1 new\n", ""))
        # The window has both in its own list: it would write over what it does not know of.
        self.assertEqual(self.titles()[-2:], ["First", "Second"])

    def test_dry_run_starts_no_window_and_changes_nothing(self):
        before = self.store.read(ACTIONS_KEY)
        self.write_new_action("First")
        self.assertEqual(run("velarc-cli", "import", "--dry-run", self.file),
                         (0, "new\tFirst\n1 new\n", ""))
        self.assertIsNone(owner_process(WINDOW_NAME))
        self.assertEqual(self.store.read(ACTIONS_KEY), before)

    def test_hostile_files_are_refused_with_a_sentence(self):
        os.mkfifo(self.file)
        status, out, err = run("velarc-cli", "import", self.file)
        self.assertEqual((status, out), (1, ""))
        self.assertIn("is no regular file", err)
        self.assertEqual(run("velarc-cli", "import", "-", input=b"\xff\x00")[0], 1)


class TransferWithoutBus(DesktopTest):
    def test_open_window_that_no_bus_leads_to_is_not_written_over(self):
        self.launch("velarc")
        socket = Path(os.environ["XDG_RUNTIME_DIR"]) / "velarc.socket"
        wait_until(socket.exists, "the window")
        status, out, err = run("velarc-cli", "import", "-", input=b'[{"name":"First"}]')
        self.assertEqual((status, out), (1, ""))
        self.assertIn("The window is open", err)
        self.end_programs()
        self.assertEqual(run("velarc-cli", "import", "-", input=b'[{"name":"First"}]'),
                         (0, "1 new\n", ""))


if __name__ == "__main__":
    unittest.main()
