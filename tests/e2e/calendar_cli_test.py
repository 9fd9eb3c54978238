"""velarc-cli as it is installed, with actions whose result goes into a calendar.

Runs inside tests/session/run_in_session.sh, with the program's place in VELARC_CLI. Events needs a
session without a calendar server: the calendars are the program's own then, files below the
session's data folder, read here by their lines. FullDisk needs one that may mount besides. Server
needs one where the bus starts the server, and Denied one where the bus lets nobody speak to it.
"""

import json
import os
import shutil
import sqlite3
import subprocess
import unittest
from datetime import date, timedelta
from pathlib import Path

CLI = os.environ["VELARC_CLI"]
DATA = Path(os.environ["XDG_DATA_HOME"]) / "velarc"
STORE = DATA / "group.com.tolmar.velarc.sqlite"
CALENDARS = DATA / "calendars"
KEY = "velarc.actions.v1"
SOON = date.today() + timedelta(days=3)  # where an event is looked for by its title


def cli(*arguments):
    """Status, standard output and standard error."""
    done = subprocess.run([CLI, *arguments], stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, timeout=60, check=False)
    return done.returncode, done.stdout, done.stderr


def store_action(name, kind):
    """Puts an action beside those that are there, which sends its result to a system destination."""
    cli("actions")  # makes the store
    with sqlite3.connect(STORE) as store:
        document, = store.execute("SELECT value FROM defaults WHERE key = ?", [KEY]).fetchone()
        actions = json.loads(document)
        number = len(actions)
        actions.append({**actions[0], "id": f"00000000-0000-4000-8000-{number:012}", "name": name,
                        "systemPrompt": "Do it.", "provider": "localFallback",
                        "actionDestination": {"type": "system", "system": kind}})
        document = json.dumps(actions).encode()
        store.execute("UPDATE defaults SET value = ? WHERE key = ?", [document, KEY])
    store.close()


def event_files():
    return sorted(CALENDARS.glob("*/*.ics"))


def properties(file):
    """The lines of the event in a file, by their names with parameters."""
    text = file.read_bytes().decode().replace("\r\n ", "").replace("\r\n\t", "")
    event = text.split("BEGIN:VEVENT\r\n")[1].split("END:VEVENT\r\n")[0]
    return dict(line.split(":", 1) for line in event.splitlines())


class Events(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(CALENDARS, ignore_errors=True)

    def create(self, text):
        status, out, err = cli("run", "Create Calendar Event", text)
        self.assertEqual((status, err), (0, ""))
        return out

    def only_event(self):
        files = event_files()
        self.assertEqual(len(files), 1)
        return files[0]

    def test_an_event_is_made_in_a_file_of_the_first_calendar(self):
        out = self.create("title: Dentist\nstart: 2030-03-04 09:00\nlocation: Room 4")
        event = self.only_event()
        self.assertEqual(event.parent.name, "Personal")
        self.assertEqual(event.stat().st_mode & 0o777, 0o600)
        written = properties(event)
        self.assertEqual(written["SUMMARY"], "Dentist")
        self.assertEqual(written["LOCATION"], "Room 4")
        self.assertEqual(written["DTSTART;TZID=America/New_York"], "20300304T090000")
        self.assertEqual(written["DTEND;TZID=America/New_York"], "20300304T093000")
        lines = out.splitlines()
        self.assertEqual(lines[:3], ['Created calendar event "Dentist".', "", "1. Dentist"])
        self.assertEqual(lines[-1], f"   Event ID: {written['UID']}")

    def test_an_event_is_found_by_its_title_and_changed(self):
        store_action("Change It", "calendarEditEvent")
        self.create(f"title: Dentist\nstart: {SOON} 09:00\nnotes: Bring the card")
        identifier = properties(self.only_event())["UID"]
        status, out, err = cli("run", "Change It", "title: DENTIST\nlocation: Room 5")
        self.assertEqual((status, err), (0, ""))
        self.assertTrue(out.startswith('Updated calendar event "DENTIST".\n'))
        written = properties(self.only_event())
        self.assertEqual((written["UID"], written["SUMMARY"]), (identifier, "DENTIST"))
        self.assertEqual((written["LOCATION"], written["DESCRIPTION"]),
                         ("Room 5", "Bring the card"))

    def test_an_event_is_removed_by_its_title(self):
        store_action("Remove It", "calendarDeleteEvent")
        self.create(f"title: Dentist\nstart: {SOON} 09:00")
        self.assertEqual(cli("run", "Remove It", "title: DENTIST"),
                         (0, 'Deleted calendar event "Dentist".\n', ""))
        self.assertEqual(event_files(), [])
        self.assertEqual(cli("run", "Remove It", "title: Dentist"),
                         (1, "", "velarc-cli: Could not find a matching calendar event.\n"))

    def test_an_end_before_the_start_makes_no_event(self):
        status, out, err = cli("run", "Create Calendar Event",
                               "title: x\nstart: 2030-03-04 09:00\nend: 2030-03-04 08:00")
        self.assertEqual((status, out, err),
                         (1, "", "velarc-cli: End date must be after start date.\n"))
        self.assertEqual(event_files(), [])

    def test_calendars_that_cannot_be_written_give_their_own_reason(self):
        DATA.mkdir(parents=True, exist_ok=True)
        CALENDARS.write_text("no folder\n")
        self.addCleanup(CALENDARS.unlink)
        status, out, err = cli("run", "Create Calendar Event", "title: x")
        self.assertEqual((status, out, err), (1, "", "velarc-cli: Not a directory\n"))
        self.assertEqual(CALENDARS.read_text(), "no folder\n")

    def test_listing_events_is_not_offered(self):
        store_action("List Them", "calendarListUpcomingEvents")
        status, out, err = cli("run", "List Them", "x")
        self.assertEqual((status, out), (2, ""))
        self.assertIn('No action is called "List Them".', err)

    def test_compose_windows_are_refused(self):
        for action in ("Compose Email (Mail App)", "Compose Message"):
            with self.subTest(action):
                self.assertEqual(cli("run", action, "Hello"),
                                 (3, "This action needs foreground compose UI in Mail or Messages. "
                                     "Open Velarc and run it there.\n", ""))


class FullDisk(unittest.TestCase):
    FULL = (1, "", "velarc-cli: No space left on device\n")

    @classmethod
    def setUpClass(cls):
        store_action("Change It", "calendarEditEvent")
        store_action("Remove It", "calendarDeleteEvent")

    def setUp(self):
        self.calendar = CALENDARS / "Personal"
        self.calendar.mkdir(parents=True, exist_ok=True)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", self.calendar], check=True)
        self.addCleanup(subprocess.run, ["umount", self.calendar], check=True)
        self.assertEqual(self.create("Kept")[0], 0)
        self.before = self.contents()
        with self.assertRaises(OSError), open(self.calendar / "filler", "wb", buffering=0) as filler:
            while True:
                filler.write(bytes(512))

    def create(self, title):
        return cli("run", "Create Calendar Event", f"title: {title}\nstart: {SOON} 09:00")

    def contents(self):
        return {file.name: file.read_bytes() for file in self.calendar.iterdir()
                if file.name != "filler"}

    def test_an_event_that_does_not_fit_gives_the_systems_reason_and_changes_nothing(self):
        self.assertEqual(self.create("Lost"), self.FULL)
        self.assertEqual(self.contents(), self.before)

    def test_a_change_that_does_not_fit_gives_the_systems_reason_and_changes_nothing(self):
        self.assertEqual(cli("run", "Change It", "title: Kept\nnotes: " + "long " * 100), self.FULL)
        self.assertEqual(self.contents(), self.before)

    def test_an_event_can_be_removed_all_the_same(self):
        self.assertEqual(cli("run", "Remove It", "title: Kept"),
                         (0, 'Deleted calendar event "Kept".\n', ""))
        self.assertEqual(self.contents(), {})


class Denied(unittest.TestCase):
    def test_an_event_is_made_nowhere(self):
        self.assertEqual(cli("run", "Create Calendar Event", "title: Dentist"),
                         (1, "", "velarc-cli: Calendar permission was denied.\n"))
        self.assertEqual(event_files(), [])


class Server(unittest.TestCase):
    def test_an_event_is_made_on_the_server_and_found_there_by_another_run(self):
        store_action("Remove It", "calendarDeleteEvent")
        status, out, err = cli("run", "Create Calendar Event",
                               f"title: Dentist\nstart: {SOON} 09:00")
        self.assertEqual((status, err), (0, ""))
        self.assertTrue(out.startswith('Created calendar event "Dentist".\n'))
        self.assertEqual(event_files(), [])
        self.assertEqual(cli("run", "Remove It", "title: dentist"),
                         (0, 'Deleted calendar event "Dentist".\n', ""))
        self.assertEqual(cli("run", "Remove It", "title: dentist"),
                         (1, "", "velarc-cli: Could not find a matching calendar event.\n"))


if __name__ == "__main__":
    unittest.main()
