"""Callers that mean harm, or make mistakes, and a window that stays as it is."""

import os
import re
import subprocess
import unittest

from desktop import (HANDOFF_KEY, HANDOFF_URL, RESULT_KEY, RESULT_URL, WINDOW_NAME, WINDOW_PATH,
                     DesktopTest, call, handoff, new_identifier, owner_process, run,
                     wait_until)

FLOOD = os.environ["VELARC_BUS_FLOOD"]
FLOOD_CALLS = 10_000
ANSWER_MS = 100  # so soon the window answers once all is over
RECORD_BYTES = 50_000_000
TEXT_BYTES = 2_000_000


class HostileCaller(DesktopTest):
    def setUp(self):
        super().setUp()
        self.process = self.launch_window()
        self.flood(1, "velarc://nowhere")  # behind its first frame

    def flood(self, count, *addresses):
        """So many Open calls at once; how long the call behind their answers took, in ms."""
        ended = subprocess.run([FLOOD, str(count), *addresses], capture_output=True, text=True,
                               check=True, timeout=120)
        return float(ended.stdout)

    def expect_calm_window(self):
        self.assertLess(self.flood(0), ANSWER_MS)
        self.assertIsNone(self.process.poll())
        self.assertEqual(owner_process(WINDOW_NAME), self.process.pid)

    def expect_no_run(self):
        self.expect_calm_window()
        self.assertIsNone(self.store.recent_action())

    def test_addresses_that_lead_nowhere_do_nothing(self):
        record = handoff("must not run")
        self.store.write(HANDOFF_KEY, record)
        for address in ["velarc://elsewhere", "velarc:", "velarc:///share-handoff",
                        "http://share-handoff", "file:///etc/passwd", "", " ",
                        "velarc://share-handoff\x01", "\x1b[31m\x07", "velarc://share-handoff.x",
                        "velarc://user@elsewhere/share-handoff", "velarc://[::1]/share-handoff",
                        "velarc://share-handoff/" + "x" * 100_000, "v" * 100_000]:
            self.flood(3, address)
        self.expect_no_run()
        self.assertIsNotNone(self.store.read(HANDOFF_KEY))

    def test_ten_thousand_calls_take_one_handoff_up_once(self):
        self.store.write(HANDOFF_KEY, handoff("cats"))
        self.flood(FLOOD_CALLS, HANDOFF_URL, "velarc://nowhere", RESULT_URL)
        wait_until(self.store.recent_action, "the one run")
        self.expect_calm_window()

    def test_ten_thousand_openings_of_a_result_are_one(self):
        self.assertEqual(run("velarc-share", "--result", "--action-name=x", "done")[0], 0)
        self.flood(FLOOD_CALLS, RESULT_URL)
        self.expect_no_run()

    def test_record_that_is_no_json_stays_and_does_nothing(self):
        for record in [b"", b"no json", b"\xff\xfe\x00", b"{}", b"[]", b"[" * 100_000,
                       b'{"inputText":7,"createdAt":0}', b'{"inputText":"x"}',
                       b'{"inputText":"x","createdAt":1e999}']:
            self.store.write(HANDOFF_KEY, record)
            self.store.write(RESULT_KEY, record)
            self.flood(2, HANDOFF_URL, RESULT_URL)
            self.assertEqual(self.store.read(HANDOFF_KEY), record)
        self.expect_no_run()

    def test_large_record_that_is_no_json_costs_little(self):
        self.store.write(HANDOFF_KEY, b'{"inputText":"' + b"x" * RECORD_BYTES)
        self.flood(100, HANDOFF_URL)
        self.expect_no_run()

    def test_large_result_of_white_space_changes_nothing(self):
        self.store.write(RESULT_KEY,
                         {"actionName": "x", "output": " " * RECORD_BYTES, "createdAt": 0})
        self.flood(100, RESULT_URL)
        self.expect_no_run()

    def test_large_text_is_run_on_and_the_window_answers_again(self):
        line = "What stands in a long file of notes, line by line.\n"
        self.store.write(HANDOFF_KEY, handoff(line * (TEXT_BYTES // len(line))))
        self.flood(100, HANDOFF_URL)
        wait_until(self.store.recent_action, "the run")
        self.expect_calm_window()

    def test_unknown_action_is_passed_over(self):
        selected = self.store.layout().get("selectedActionID")
        for arguments in [["'select-action'", f"[<'{new_identifier()}'>]"],
                          ["'select-action'", "[<7>]"], ["'select-action'", "[]"],
                          ["'quit'", "[]"], ["''", "[<'x'>, <'y'>]"]]:
            call(WINDOW_NAME, WINDOW_PATH, "org.freedesktop.Application.ActivateAction",
                 *arguments, "@a{sv} {}")
        self.assertEqual(self.store.layout().get("selectedActionID"), selected)
        self.expect_no_run()

    def test_call_of_the_wrong_shape_is_refused(self):
        for method, arguments in [("org.freedesktop.Application.Open", ["'x'", "@a{sv} {}"]),
                                  ("org.freedesktop.Application.Activate", []),
                                  ("org.freedesktop.Application.Quit", []),
                                  ("com.tolmar.velarc.Window1.Copy", ["'text/html'", "[byte 1]"])]:
            with self.assertRaisesRegex(RuntimeError, re.compile("Error")):
                call(WINDOW_NAME, WINDOW_PATH, method, *arguments)
        self.expect_no_run()


if __name__ == "__main__":
    unittest.main()
