"""The window in a session and on a display of its own, driven by what a user has.

The program's place is in VELARC. Nobody answers for engines: runs take the offline engine.
"""

import os
import signal
import unittest

from desktop_window import AccessibilityBus, Window, clipboard, copy, wait_for

VELARC = os.environ["VELARC"]
EDITOR = "Type, paste, or drop a file — then hit Run"
TEXT = "The harbour ferry was late again. The crew blamed the tide. Nobody minded much."
BUTTON = "push button"


def setUpModule():
    bus = AccessibilityBus()
    unittest.addModuleCleanup(bus.close)


class WindowTest(unittest.TestCase):
    def setUp(self):
        self.window = Window(VELARC)
        self.addCleanup(self.end)

    def end(self):
        status, said = self.window.close()
        self.assertEqual(status, 0, said)
        self.assertNotIn("qml", said.lower())

    def type_into_the_editor(self, text):
        self.window.wait_for_focus(EDITOR)
        self.window.type(text)
        wait_for("the typed text", lambda: self.window.text_of(EDITOR) == text)

    def run_to_result(self, text=TEXT):
        self.type_into_the_editor(text)
        self.window.key("ctrl+Return")
        self.window.find("Run Again", BUTTON)


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
        copy(b"before")
        self.window.press("Copy", BUTTON)
        wait_for("the result on the clipboard", lambda: clipboard() not in (b"", b"before"))

    def test_by_keyboard_alone_from_the_start_to_a_copied_result(self):
        copy(b"before")
        self.run_to_result()
        self.tab_to("Copy")
        self.window.key("space")
        wait_for("the result on the clipboard", lambda: clipboard() not in (b"", b"before"))

    def tab_to(self, name):
        for _ in range(60):
            self.window.key("Tab")
            node = wait_for("a focus", self.window.focused)
            if node.get_name() == name:
                return
        self.fail(f"Tab never came to '{name}'")


class Reading(WindowTest):
    def test_every_control_has_a_name_and_can_be_pressed(self):
        for node in self.window.nodes():
            if node.get_role_name() in (BUTTON, "list item", "toggle button", "check box"):
                self.assertNotEqual(node.get_name(), "")
                self.assertGreater(node.get_n_actions(), 0, node.get_name())

    def test_each_way_into_a_sheet_opens_it_and_escape_closes_it(self):
        for key, title in (("ctrl+k", "Manage Actions"), ("ctrl+n", "Action Studio")):
            with self.subTest(title):
                self.window.find(EDITOR)
                self.window.key(key)
                self.window.find(title)
                self.window.key("Escape")
                self.window.wait_until_gone(title)

    def test_more_leads_to_the_usage_of_today(self):
        self.window.press("More", BUTTON)
        self.window.press("Usage")
        self.window.wait_for_words("No usage yet today.")


class Ending(WindowTest):
    def test_selection_and_text_of_the_library_survive_a_restart(self):
        self.window.press("Git Ideas", "list item")
        wait_for("the choice", lambda: self.window.named("Git Ideas", BUTTON))
        self.assertEqual(self.window.close()[0], 0)
        self.window = Window(VELARC)
        self.window.find("Git Ideas", BUTTON)

    def test_a_killed_window_leaves_a_store_that_the_next_one_opens(self):
        self.window.press("Tell Me a Joke", "list item")
        wait_for("the choice", lambda: self.window.named("Tell Me a Joke", BUTTON))
        self.window.process.send_signal(signal.SIGKILL)
        self.window.process.communicate()
        self.window = Window(VELARC)
        self.window.find("Tell Me a Joke", BUTTON)


if __name__ == "__main__":
    unittest.main()
