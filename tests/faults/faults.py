"""What the tests of faults share: the installed programs in a session that goes wrong.

Runs inside tests/session/run_off_the_network.sh and tests/session/run_in_session.sh, so that it may
mount what nobody else sees, with the programs' prefix in VELARC_PREFIX.
"""

import json
import os
import sqlite3
import subprocess
import sys
from contextlib import closing, contextmanager
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "e2e"))

from desktop import (BIN, SESSION, WINDOW_NAME, WINDOW_PATH, DesktopTest, Store,  # noqa: E402
                     call, environment, new_identifier, owner_process, processes, run,
                     wait_until)

LIBRARY_KEY = "velarc.actions.v1"
JOKE = "Tell Me a Joke"
NO_RAISE = b"This plugin does not support raise()\n"  # what Qt says without a display
DATA = Path(os.environ["XDG_DATA_HOME"])


@contextmanager
def mounted(target, *arguments):
    """Something else at a place, for as long as it lasts."""
    subprocess.run(["mount", *arguments, str(target)], check=True)
    try:
        yield
    finally:
        subprocess.run(["umount", "--lazy", str(target)], check=True)


class FaultTest(DesktopTest):
    """At the end of each test both programs work, and the store holds what it held."""

    def setUp(self):
        super().setUp()
        library = json.loads(self.store.read(LIBRARY_KEY))
        mine = {**library[0], "id": new_identifier(), "name": "My Own Action"}
        self.store.write(LIBRARY_KEY, [*library, mine])
        self.listed = run("velarc-cli", "actions")[1]
        self.keep = self.action("Git Ideas")

    def start_window(self, **options):
        window = self.launch("velarc", stderr=subprocess.PIPE, **options)
        wait_until(lambda: owner_process(WINDOW_NAME) == window.pid, "the window")
        return window

    def select(self, action):
        """In the running window, which writes it into the store."""
        call(WINDOW_NAME, WINDOW_PATH, "org.freedesktop.Application.ActivateAction",
             "'select-action'", f"[<'{action}'>]", "@a{sv} {}")

    def selected(self):
        return self.store.layout().get("selectedActionID")

    def select_and_see(self, action):
        self.select(action)
        wait_until(lambda: self.selected() == action, "the selection in the store")

    def expect_sentence(self, text, program="velarc-cli"):
        """One line for people."""
        self.assertRegex(text, rf'\A{program}: ["A-Z][^\n]*\n\Z')

    def expect_window_works(self, window):
        self.assertIsNone(window.poll())
        joke = self.action(JOKE)
        self.assertEqual(run("velarc-share", "--action", JOKE, "cats"), (0, "", ""))
        self.wait_for_run_of(joke)
        self.select_and_see(self.keep)
        window.terminate()
        _, said = window.communicate(timeout=30)
        self.assertEqual((window.returncode, said.replace(NO_RAISE, b"")), (0, b""))

    def expect_all_well(self):
        """A sound store that holds the library, nothing set aside, and programs that work."""
        with closing(sqlite3.connect(self.store.file)) as connection:
            self.assertEqual(connection.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
        self.assertEqual(list(self.store.file.parent.glob("*.corrupt-*")), [])
        self.assertEqual(run("velarc-cli", "actions"), (0, self.listed, ""))
        status, out, err = run("velarc-cli", "run", JOKE, "cats")
        self.assertEqual((status, err), (0, ""))
        self.assertIn("cats", out)
        self.expect_window_works(self.start_window())
