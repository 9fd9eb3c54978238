"""The window in a session and on a display of its own, driven by what a user has.

The program's place is in VELARC. Nobody answers for engines: runs take the offline engine.
"""

import signal
import unittest

from desktop_window import (BUTTON, EDITOR, TEXT, AccessibilityBus, Atspi, Window, WindowTest,
                            actions_of, clipboard, copy, wait_for)


CONTROLS = (BUTTON, "list item", "toggle button", "check box", "radio button")
WAYS = {  # from the home screen into each sheet, with what is read there
    "New": "Action Studio",
    "More": "Usage",
    "Actions": "Manage Actions",
    "All Actions": "Manage Actions",
    "Git Ideas": "Manage Actions",
    "Engine Room": "Close",
    "Automation": "Auto-copy Result",
}


def setUpModule():
    bus = AccessibilityBus()
    unittest.addModuleCleanup(bus.close)


class Running(WindowTest):
    def test_typed_text_runs_and_its_result_is_shown(self):
        self.run_to_result()
        self.window.wait_for_words("Result • Local Preview Engine")
        self.window.wait_for_words("Result: ")  # and announced

    def test_the_run_button_does_what_the_key_does(self):
        self.type_into_the_editor(TEXT)
        self.window.press("Run", BUTTON)
        self.window.wait_for_words("Result • ")

    def test_pasting_runs_at_once_while_automation_says_so(self):
        copy(b"What another program has copied.")
        self.window.press("Paste + Run")
        self.window.wait_for_words("Result • ")

    def test_back_leads_to_the_text_and_the_editor_has_the_focus(self):
        self.run_to_result()
        self.window.press("Back")
        self.window.wait_for_focus(EDITOR)
        self.assertEqual(self.window.text_of(EDITOR), TEXT)

    def test_copied_result_reaches_another_program(self):
        self.run_to_result()
        pasted = self.press_and_paste_elsewhere("Copy")
        self.window.wait_for_words(pasted.splitlines()[0])

    def test_by_keyboard_alone_from_the_start_to_a_copied_result(self):
        copy(b"before")
        self.run_to_result()
        self.tab_to("Copy")
        self.window.key("space")
        wait_for("the result on the clipboard", lambda: clipboard() not in (b"", b"before"))

    def test_arrow_keys_reach_the_actions_that_are_out_of_sight(self):
        self.select("Tell Me a Joke")
        self.window.wait_for_focus(EDITOR)  # it takes it a moment after the window has come
        self.tab_to("Tell Me a Joke", "list item")  # the action's card has that name as well
        self.window.key(*["Down"] * 30)  # the last one is where it ends
        self.window.wait_for_focus("Focus Sprint Planner")
        self.window.find("Focus Sprint Planner", BUTTON)

    def tab_to(self, name, role=BUTTON):
        for _ in range(60):
            self.window.key("Tab")
            node = wait_for("a focus", self.window.focused)
            if (node.get_name(), node.get_role_name()) == (name, role):
                return
        self.fail(f"Tab never came to '{name}'")


class Reading(WindowTest):
    def controls(self):
        return [node for node in self.window.nodes() if node.get_role_name() in CONTROLS]

    def test_every_control_has_a_name_and_can_be_pressed(self):
        self.window.find("Clear")
        self.expect_names_and_presses({"Clear", "Paste + Run", "Run", "Automation", "All Actions",
                                       "New", "More", "Actions", "Engine Room"})
        self.run_to_result()
        self.expect_names_and_presses({"Back", "Run Again", "Copy", "Share", "Restart", "Expand"})

    def expect_names_and_presses(self, some):
        controls = self.controls()
        for node in controls:
            self.assertNotEqual(node.get_name(), "", node.get_role_name())
            actions = actions_of(node)
            self.assertIn("Press", actions, node.get_name())
        self.assertLessEqual(some, {node.get_name() for node in controls})

    def test_a_screen_reader_finds_each_control_by_its_label_and_presses_it(self):
        """Each press, by the label alone, does what it should, and the way back is one, too."""
        self.select("Git Ideas")
        for label, shown in WAYS.items():
            with self.subTest(label):
                self.window.wait_for_focus(EDITOR)
                self.window.press(label, BUTTON)
                self.window.find(shown)
                self.window.key("Escape")
                self.window.wait_until_gone(shown)

    def test_a_screen_reader_clears_types_over_and_runs(self):
        self.type_into_the_editor(TEXT)
        self.window.press("Clear", BUTTON)
        wait_for("an empty editor", lambda: self.window.text_of(EDITOR) == "")
        self.window.press("Tell Me a Joke", "list item")
        self.window.find("Tell Me a Joke", BUTTON)
        Atspi.Component.grab_focus(self.window.find(EDITOR))
        self.type_into_the_editor(TEXT)
        self.window.press("Run", BUTTON)
        self.window.press("Back", BUTTON)
        self.window.wait_for_focus(EDITOR)

    def test_a_screen_reader_turns_automation_over(self):
        self.window.press("Automation", BUTTON)
        self.window.press("Auto-run on Paste")
        self.window.press("Done", BUTTON)
        self.window.find("Paste", BUTTON)
        self.window.press("Automation", BUTTON)
        self.window.press("Auto-run on Paste")
        self.window.press("Done", BUTTON)
        self.window.find("Paste + Run", BUTTON)

    def test_a_result_is_announced(self):
        heard = self.window.listen()
        self.run_to_result()
        wait_for("the announcement",
                 lambda: [name for name in heard if name.startswith("Result: ")])

    def test_each_way_into_a_sheet_opens_it_and_escape_closes_it(self):
        for key, title in (("ctrl+k", "Manage Actions"), ("ctrl+n", "Action Studio")):
            with self.subTest(title):
                self.window.wait_for_focus(EDITOR)
                self.window.key(key)
                self.window.find(title)
                self.window.key("Escape")
                self.window.wait_until_gone(title)
        self.window.wait_for_focus(EDITOR)  # as it was before

    def test_more_leads_to_the_usage_of_today(self):
        self.window.press("More", BUTTON)
        self.window.press("Usage")
        self.window.wait_for_words("No usage yet today.")


class Arrangements(WindowTest):
    def turn_over(self):
        self.window.press("More", BUTTON)
        self.window.press("New Run Experience")
        self.window.key("Escape")

    def test_the_older_one_has_a_strip_of_four_actions_and_no_card(self):
        self.window.wait_for_focus(EDITOR)
        self.window.find("Action", "heading")
        self.turn_over()
        self.addCleanup(self.return_to_the_newer_one)
        self.window.find("Quick Actions", "heading")
        self.window.wait_until_gone("Action")
        self.window.press("Tell Me a Joke", BUTTON)
        self.run_to_result()
        self.window.press("Back", BUTTON)
        self.window.press("All Actions", BUTTON)
        self.window.find("Manage Actions")
        self.window.key("Escape")

    def return_to_the_newer_one(self):
        self.turn_over()
        self.window.find("Action", "heading")


class Ending(WindowTest):
    def test_selection_and_text_of_the_library_survive_a_restart(self):
        self.window.press("Git Ideas", "list item")
        wait_for("the choice", lambda: self.window.named("Git Ideas", BUTTON))
        self.assertEqual(self.window.close()[0], 0)
        self.window = Window(self.program)
        self.window.find("Git Ideas", BUTTON)

    def test_a_killed_window_leaves_a_store_that_the_next_one_opens(self):
        self.window.press("Tell Me a Joke", "list item")
        wait_for("the choice", lambda: self.window.named("Tell Me a Joke", BUTTON))
        self.window.process.send_signal(signal.SIGKILL)
        self.window.process.communicate()
        self.window = Window(self.program)
        self.window.find("Tell Me a Joke", BUTTON)


if __name__ == "__main__":
    unittest.main()
