"""A clock that jumps, and a time zone that changes, under programs that run."""

import json
import os
import shutil
import subprocess
import tempfile
import unittest
from datetime import datetime, timedelta, timezone
from pathlib import Path

from faults import DATA, FaultTest, environment, mounted, run

LIBRARY = next(Path("/usr/lib").glob("*/faketime/libfaketimeMT.so.1"), None)
USAGE_KEY = "velarc.tokenUsageLedger.v1"


@unittest.skipUnless(LIBRARY, "faketime is not installed, so no clock can be made to jump")
class ClockJumps(FaultTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.clock = Path(folder.name) / "clock"
        self.set_clock(timedelta())

    def set_clock(self, shift):
        """For all programs that were started by it, and at once."""
        fresh = self.clock.with_suffix(".new")
        fresh.write_text(f"{int(shift.total_seconds()):+d}\n")
        fresh.rename(self.clock)

    def by_this_clock(self):
        return environment(LD_PRELOAD=str(LIBRARY), FAKETIME_TIMESTAMP_FILE=str(self.clock),
                           FAKETIME_NO_CACHE="1", FAKETIME_DONT_FAKE_MONOTONIC="1")

    def test_the_clock_that_jumps_is_the_programs(self):
        self.set_clock(timedelta(days=400))
        told = subprocess.run(["date", "+%s"], env=self.by_this_clock(), capture_output=True,
                              text=True, check=True).stdout
        ahead = datetime.fromtimestamp(int(told), timezone.utc) - datetime.now(timezone.utc)
        self.assertGreater(ahead, timedelta(days=399))

    def test_a_window_goes_on_while_the_clock_jumps_a_day_forth_and_back(self):
        window = self.start_window(env=self.by_this_clock())
        for action, shift in [("Git Ideas", 1), ("Tell Me a Joke", 0), ("Extract Invoice Info", -1),
                              ("Meal Planning & Recipe", 0)]:
            self.set_clock(timedelta(days=shift))
            self.select_and_see(self.action(action))
            self.assertEqual(run("velarc-share", "--action", action, "cats"), (0, "", ""))
            self.wait_for_run_of(self.action(action))
        self.expect_window_works(window)
        self.expect_all_well()

    def test_the_terminal_answers_at_any_time(self):
        for days in [1, -1, 20000, -20000]:
            self.set_clock(timedelta(days=days))
            status, out, err = run("velarc-cli", "run", "Tell Me a Joke", "cats",
                                   env=self.by_this_clock())
            self.assertEqual((status, err), (0, ""), days)
            self.assertIn("cats", out)
        self.expect_all_well()


class ZoneChanges(FaultTest):
    def events(self):
        return sorted((DATA / "velarc" / "calendars").glob("*/*.ics"))

    def setUp(self):
        super().setUp()
        shutil.rmtree(DATA / "velarc" / "calendars", ignore_errors=True)
        library = json.loads(self.store.read("velarc.actions.v1"))
        for name, kind in [("Change It", "calendarEditEvent"), ("Make It", "calendarCreateEvent")]:
            library.append({**library[0], "id": os.urandom(4).hex().upper()
                            + "-0000-4000-8000-000000000000", "name": name,
                            "provider": "localFallback",
                            "actionDestination": {"type": "system", "system": kind}})
        self.store.write("velarc.actions.v1", library)
        self.listed = run("velarc-cli", "actions")[1]

    def test_an_event_stays_at_its_moment_in_another_zone(self):
        day = (datetime.now() + timedelta(days=5)).strftime("%Y-%m-%d")
        made = run("velarc-cli", "run", "Make It", f"title: Ferry\nstart: {day} 09:00",
                   env=environment(TZ="America/New_York"))
        self.assertEqual((made[0], made[2]), (0, ""))
        changed = run("velarc-cli", "run", "Change It", "title: Ferry\nlocation: Pier 4",
                      env=environment(TZ="Asia/Kolkata"))
        self.assertEqual((changed[0], changed[2]), (0, ""))
        event, = self.events()
        text = event.read_text()
        self.assertIn("LOCATION:Pier 4", text)
        self.assertIn(f"DTSTART;TZID=America/New_York:{day.replace('-', '')}T090000", text)

    def test_a_window_goes_on_while_the_systems_zone_changes(self):
        zones = Path("/usr/share/zoneinfo")
        if not Path("/etc/localtime").exists():
            self.skipTest("this system has no zone that could change")
        window = self.start_window(env=environment(TZ=None))
        for zone in ["Pacific/Kiritimati", "Pacific/Pago_Pago"]:
            with mounted("/etc/localtime", "--bind", str(zones / zone)):
                self.assertEqual(run("velarc-share", "--action", "Make It", f"title: In {zone}"),
                                 (0, "", ""))
                self.wait_for_run_of(self.action_now("Make It"))
                self.assertEqual(run("velarc-share", "--action", "Git Ideas", "x"), (0, "", ""))
                self.wait_for_run_of(self.keep)
        self.expect_window_works(window)
        self.expect_all_well()

    def action_now(self, title):
        listed = json.loads(run("velarc-cli", "actions", "--json")[1])
        return next(action["id"] for action in listed if action["title"] == title)


if __name__ == "__main__":
    unittest.main()
