"""com.tolmar.velarc.Actions, started by the bus: what programs and the searches of desktops ask."""

import os
import re
import unittest
from pathlib import Path

from desktop import DesktopTest, call, new_identifier, owner_process, processes, wait_until

SERVICE = "com.tolmar.velarc.Actions"
JOKE = "Tell Me a Joke"
IDENTIFIER = re.compile("[0-9A-F]{8}(?:-[0-9A-F]{4}){3}-[0-9A-F]{12}")


def actions(method, *arguments):
    return call(SERVICE, "/com/tolmar/velarc/Actions", f"com.tolmar.velarc.Actions1.{method}",
                *arguments)


def gnome(method, *arguments):
    return call(SERVICE, "/com/tolmar/velarc/SearchProvider",
                f"org.gnome.Shell.SearchProvider2.{method}", *arguments)


def krunner(method, *arguments):
    return call(SERVICE, "/com/tolmar/velarc/Runner", f"org.kde.krunner1.{method}", *arguments)


class ServiceTest(DesktopTest):
    def expect_no_window(self):
        self.assertEqual(processes("velarc"), [])

    def expect_window_on(self, action):
        wait_until(lambda: self.store.layout().get("selectedActionID") == action, "the selection")
        self.window()
        self.assertIsNone(self.store.read("velarc.share.pendingHandoff.v1"))


class Actions(ServiceTest):
    def test_list_is_that_of_the_command_line(self):
        listed = actions("List")
        self.assertEqual(IDENTIFIER.findall(listed), [action["id"] for action in self.actions])
        self.assertIn(f"'{JOKE}'", listed)
        self.expect_no_window()

    def test_run_answers_with_its_dialog_and_the_engine_that_ran(self):
        for action in [JOKE.upper(), self.action(JOKE)]:
            answer = actions("Run", action, "cats")
            self.assertRegex(answer, "^\\('I asked my .*cats assistant")
            for detail in ["'done': <true>", "'provider': <'localFallback'>", "'text': <'I asked"]:
                self.assertIn(detail, answer)
        self.expect_no_window()

    def test_refusals_are_answers(self):
        self.assertEqual(actions("Run", JOKE, " \n"), "('Input is empty.', {'done': <false>})")
        self.assertEqual(actions("Run", new_identifier(), "x"),
                         "('Action no longer exists.', {'done': <false>})")

    def test_title_of_no_action_is_an_error(self):
        with self.assertRaisesRegex(RuntimeError, "Actions1.Error.NoSuchAction"):
            actions("Run", "Nope", "x")

    def test_two_services_do_not_stand_side_by_side(self):
        actions("List")
        self.assertEqual(len(processes("velarc-cli")), 1)
        self.assertEqual(owner_process(SERVICE), processes("velarc-cli")[0])

    def test_memory_of_the_service_is_private(self):
        actions("List")
        if os.geteuid() != 0:
            with self.assertRaises(PermissionError):
                os.readlink(f"/proc/{owner_process(SERVICE)}/exe")
        limits = Path(f"/proc/{owner_process(SERVICE)}/limits").read_text(encoding="ascii")
        self.assertRegex(limits, "Max core file size +0 ")


class GnomeShell(ServiceTest):
    """The calls in the order in which the shell makes them."""

    def test_search_lists_names_and_starts_no_window(self):
        joke = self.action(JOKE)
        self.assertEqual(gnome("GetInitialResultSet", "['jok']"), f"(['{joke}'],)")
        self.assertEqual(gnome("GetSubsearchResultSet", f"['{joke}']", "['joke']"),
                         f"(['{joke}'],)")
        self.assertEqual(gnome("GetSubsearchResultSet", "@as []", "['joke']"), "(@as [],)")
        metas = gnome("GetResultMetas", f"['{joke}', 'x']")
        self.assertEqual(metas.count("'id'"), 1)
        self.assertIn(f"'name': <'{JOKE}'>", metas)
        self.assertIn("'gicon': <'com.tolmar.velarc'>", metas)
        self.expect_no_window()

    def test_phrases_find_every_action(self):
        for terms in ["['Run', 'action', 'in', 'Velarc']", "['Use', 'Velarc', 'action']"]:
            found = IDENTIFIER.findall(gnome("GetInitialResultSet", terms))
            self.assertEqual(found, [action["id"] for action in self.actions])

    def test_chosen_hit_opens_the_window_on_its_action(self):
        joke = self.action(JOKE)
        gnome("ActivateResult", joke, "['joke']", "1234")
        self.expect_window_on(joke)

    def test_search_inside_the_program_opens_the_window(self):
        gnome("LaunchSearch", "['joke']", "0")
        self.window()


class KRunner(ServiceTest):
    def test_match_lists_names_and_skills_and_starts_no_window(self):
        joke = self.action(JOKE)
        self.assertEqual(krunner("Actions"), "(@a(sss) [],)")
        match = krunner("Match", "tell me a joke")
        self.assertIn(f"[('{joke}', '{JOKE}', 'com.tolmar.velarc', 100, 1.0, ", match)
        self.assertIn(joke, krunner("Match", "humor"))
        self.assertEqual(krunner("Match", ""), "(@a(sssida{sv}) [],)")
        self.assertEqual(len(IDENTIFIER.findall(krunner("Match", "use velarc action"))),
                         len(self.actions))
        self.expect_no_window()

    def test_chosen_match_opens_the_window_on_its_action(self):
        joke = self.action(JOKE)
        krunner("SetActivationToken", "token")
        krunner("Run", joke, "")
        self.expect_window_on(joke)
        krunner("Teardown")


if __name__ == "__main__":
    unittest.main()
