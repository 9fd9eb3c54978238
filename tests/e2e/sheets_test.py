"""The sheets of the window, in a session and on a display of their own, as their user has them.

The program's place is in VELARC. `Engines` needs tests/session/run_off_the_network.sh around it,
VELARC_SCRIPTED_HTTPS and VELARC_FIXTURES: a provider that has the real one's name answers there.
"""

import json
import os
import sqlite3
import subprocess
import tempfile
import unittest
from pathlib import Path

import canary
from desktop_window import AccessibilityBus, Window, clipboard, wait_for
from gi.repository import Atspi
from provider import Provider

VELARC = os.environ["VELARC"]
STORE = Path(os.environ["XDG_DATA_HOME"]) / "velarc" / "group.com.tolmar.velarc.sqlite"
EDITOR = "Type, paste, or drop a file — then hit Run"
LIBRARY = "Manage Actions"
BUTTON = "push button"
ROW = "list item"


def setUpModule():
    bus = AccessibilityBus()
    unittest.addModuleCleanup(bus.close)


def stored(key):
    connection = sqlite3.connect(STORE, timeout=20)
    row = connection.execute("SELECT value FROM defaults WHERE key = ?", [key]).fetchone()
    connection.close()
    return json.loads(row[0])


def clear_key():
    subprocess.run(["secret-tool", "clear", "xdg:schema", "com.tolmar.velarc.ApiKey", "service",
                    "com.tolmar.velarc", "account", "openai_api_key"], check=False)  # there may be none


def stored_actions():
    return {action["name"]: action for action in stored("velarc.actions.v1")}


class SheetWindow(Window):
    """Finds things by the sheet or the row that they stand in."""

    def below(self, sheet):
        return list(self._showing(self.find(sheet, "dialog")))

    def focused(self):
        """The innermost one: a sheet has the focus with what is in it."""
        innermost = None
        for node in self.nodes():
            if node.get_state_set().contains(Atspi.StateType.FOCUSED):
                innermost = node
        return innermost

    def words(self):
        """Every text that a screen reader could come to."""
        for node in self.nodes():
            yield node.get_name()
            yield node.get_description()
            if node.get_text_iface():
                yield Atspi.Text.get_text(node, 0, -1)

    @staticmethod
    def press_node(node):
        actions = [node.get_action_name(at) for at in range(node.get_n_actions())]
        assert "Press" in actions, f"'{node.get_name()}' cannot be pressed: {actions}"
        node.do_action(actions.index("Press"))

    def press_in(self, sheet, name, description=None):
        def found():
            return next((node for node in self.below(sheet) if node.get_name() == name
                         and description in (None, node.get_description())
                         and node.get_n_actions() > 0), None)
        self.press_node(wait_for(f"'{name}' in '{sheet}'", found))


class SheetsTest(unittest.TestCase):
    def setUp(self):
        for file in STORE.parent.glob(f"{STORE.name}*"):
            file.unlink()
        self.window = SheetWindow(VELARC)
        self.addCleanup(self.end)
        self.window.wait_for_focus(EDITOR)

    def end(self):
        status, said = self.window.close()
        self.assertEqual(status, 0, said)
        self.assertNotIn("qml", said.lower())

    def open_by_key(self, key, title, focus):
        self.window.key(key)
        self.window.find(title, "dialog")
        self.window.wait_for_focus(focus)

    def wait_until_closed(self, title):
        wait_for(f"'{title}' to close", lambda: self.window.named(title, "dialog") is None)

    def leave(self, title):
        self.window.key("Escape")
        self.wait_until_closed(title)
        self.window.wait_for_focus(EDITOR)

    def open_from_more(self, entry, title):
        self.window.press("More", BUTTON)
        self.window.press_in("More", entry)
        self.wait_until_closed("More")
        self.window.find(title, "dialog")

    def run_typed(self, text):
        self.window.wait_for_focus(EDITOR)
        self.window.type(text)
        wait_for("the typed text", lambda: self.window.text_of(EDITOR) == text)
        self.window.key("ctrl+Return")
        self.window.find("Run Again", BUTTON)


class Library(SheetsTest):
    def open_library(self):
        self.open_by_key("ctrl+k", LIBRARY, "Search actions")

    def rows(self):
        return [node for node in self.window.below(LIBRARY) if node.get_role_name() == ROW]

    def wait_for_rows(self, *names):
        wait_for(f"the rows {names}",
                 lambda: sorted(row.get_name() for row in self.rows()) == sorted(names))

    def search(self, words, *found):
        self.window.wait_for_focus("Search actions")
        self.window.key("ctrl+a")
        self.window.type(words)
        self.wait_for_rows(*found)

    def choose_in_menu(self, entry, name):
        """The menu of the first row that was found; the focus goes back to the search."""
        if self.window.focused().get_name() != name:
            self.window.key("Down")
            self.window.wait_for_focus(name)
        self.window.key("Menu")
        self.window.find("Duplicate", "menu item")
        self.window.key(*["Down"] * ["Pin", "Edit", "Duplicate", "Delete"].index(entry), "Return")
        self.window.wait_until_gone("Duplicate")

    def back_to_search(self):
        self.window.key("Up")
        self.window.wait_for_focus("Search actions")

    def make_action(self, name):
        self.open_by_key("ctrl+n", "Action Studio", "Action name")
        self.window.type(name)
        self.window.key("Return")
        self.wait_until_closed("Action Studio")
        wait_for("the new action", lambda: name in stored_actions())

    def test_an_action_is_made_and_run(self):
        self.make_action("Harbour Haiku")
        self.open_library()
        self.search("harbour", "Harbour Haiku")
        self.window.key("Return")
        self.wait_until_closed(LIBRARY)
        self.window.find("Harbour Haiku", BUTTON)
        self.run_typed("The ferry was late again.")
        self.window.wait_for_words("Result • Local Preview Engine")

    def test_an_action_is_duplicated_edited_pinned_and_deleted_and_comes_back(self):
        self.make_action("Harbour Haiku")
        self.open_library()
        self.search("harbour", "Harbour Haiku")
        self.choose_in_menu("Duplicate", "Harbour Haiku")
        self.wait_for_rows("Harbour Haiku", "Harbour Haiku Copy")
        self.back_to_search()
        self.search("haiku copy", "Harbour Haiku Copy")
        self.choose_in_menu("Edit", "Harbour Haiku Copy")
        self.window.wait_for_focus("Action name")
        self.window.key("ctrl+a")
        self.window.type("Second Haiku")
        self.window.key("Return")
        self.wait_until_closed("Action Studio")
        self.open_library()
        self.search("second", "Second Haiku")
        self.choose_in_menu("Pin", "Second Haiku")
        wait_for("the pin", lambda: stored_actions()["Second Haiku"]["isPinned"])
        before = stored("velarc.actions.v1")
        self.delete_found("Second Haiku")
        self.window.press("Undo", BUTTON)
        wait_for("the action", lambda: stored("velarc.actions.v1") == before)
        self.wait_for_rows("Second Haiku")
        self.window.wait_until_gone("Deleted Second Haiku")
        self.delete_found("Second Haiku")
        self.window.key("ctrl+z")
        wait_for("the action", lambda: stored("velarc.actions.v1") == before)

    def delete_found(self, name):
        self.choose_in_menu("Delete", name)
        self.window.wait_for_words(f"Deleted {name}")
        wait_for("the deletion", lambda: name not in stored_actions())

    def test_the_search_finds_by_name_prompt_and_skill(self):
        self.open_library()
        self.search("eisenhower", "Priority Matrix")
        self.search("billing", "Invoice Follow-Up Message")
        self.search("  INVOICE ", "Extract Invoice Info", "Invoice Follow-Up Message")
        self.search("nobody has this")
        self.window.wait_for_words("No Matching Actions")
        self.leave(LIBRARY)

    def test_what_was_exported_and_deleted_is_imported_again(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        file = Path(folder.name) / "actions.json"
        before = stored("velarc.actions.v1")
        self.open_library()
        self.window.press("Export", BUTTON)
        self.window.press("All Actions\u2026")
        self.type_path(file)
        self.window.wait_for_words(f"Exported {len(before)} actions")
        self.assertEqual(json.loads(file.read_text()), before)
        self.search("git ideas", "Git Ideas")
        self.delete_found("Git Ideas")
        self.window.press("Import", BUTTON)
        self.type_path(file)
        self.window.wait_for_words("1 new, 21 unchanged")
        self.assertNotIn("Git Ideas", stored_actions())
        self.window.key("Return")
        self.window.wait_for_words("1 new, 21 unchanged.")
        self.assertEqual(stored_actions().keys(), {action["name"] for action in before})

    def type_path(self, file):
        self.window.wait_for_focus("Path of the file")
        self.window.key("ctrl+a")
        self.window.type(str(file))
        self.window.key("Return")


class Keyboard(SheetsTest):
    """Every sheet without a pointer, and as a screen reader comes to it."""

    CONTROLS = (BUTTON, "check box", "toggle button", "combo box", "text", "password text")
    OF_A_GROUP = ("radio button", ROW)  # Tab comes to one of them, the arrows to the others

    def controls(self, title, roles):
        return [node for node in self.window.below(title) if node.get_role_name() in roles]

    def walk(self):
        """The names of what Tab comes to, until it has come round."""
        names = []
        while len(names) < 60:
            name = wait_for("a focus", self.window.focused).get_name()
            if names and name == names[0]:
                return names
            names.append(name)
            self.window.key("Tab")
        self.fail(f"Tab never came round: {names}")

    def look_at(self, title):
        for node in self.controls(title, self.CONTROLS + self.OF_A_GROUP):
            self.assertNotEqual(node.get_name(), "", node.get_role_name())
            if node.get_role_name() not in ("text", "password text"):
                actions = [node.get_action_name(at) for at in range(node.get_n_actions())]
                self.assertIn("Press", actions, node.get_name())
        reached = self.walk()
        for node in self.controls(title, self.CONTROLS):
            self.assertIn(node.get_name(), reached)

    def test_each_sheet_is_walked_by_tab_and_left_by_escape(self):
        for open_sheet, title in (
                (lambda: self.window.key("ctrl+k"), LIBRARY),
                (lambda: self.window.key("ctrl+n"), "Action Studio"),
                (lambda: self.open_from_more("Usage", "Usage"), "Usage"),
                (lambda: self.window.press("More", BUTTON), "More"),
                (lambda: self.window.press("Engine Room", BUTTON), "Engine Room")):
            with self.subTest(title):
                open_sheet()
                self.window.find(title, "dialog")
                self.look_at(title)
                self.leave(title)

    def test_each_section_of_the_engine_room_and_the_connect_sheet_are_walked_by_tab(self):
        self.window.press("Engine Room", BUTTON)
        for section in ("Default Engine", "Advanced", "Connections"):
            with self.subTest(section):
                self.window.press(section, "radio button")
                self.look_at("Engine Room")
        self.window.press_in("Engine Room", "Connect", "Gemini")
        self.window.wait_for_focus("Gemini API Key")
        self.look_at("Connect Gemini")
        self.window.key("Escape")
        self.wait_until_closed("Connect Gemini")
        self.leave("Engine Room")


class Engines(SheetsTest):
    def setUp(self):
        self.provider = Provider(os.environ["VELARC_SCRIPTED_HTTPS"])
        self.addCleanup(lambda: self.assertEqual(self.provider.close(), []))
        self.key = canary.new_key()
        self.addCleanup(clear_key)
        fixtures = Path(os.environ["VELARC_FIXTURES"]) / "wire"
        self.reply = (fixtures / "openai_reply_reasoning_before_message.json").read_text()
        super().setUp()

    def open_section(self, section):
        self.open_from_more("Engine Room", "Engine Room")
        self.window.press(section, "radio button")

    def begin_to_connect(self, engine):
        """From the Engine Room; the key is typed and on its way."""
        self.open_section("Connections")
        self.window.press_in("Engine Room", "Connect", engine)
        self.window.find(f"Connect {engine}", "dialog")
        self.window.wait_for_focus(f"{engine} API Key")
        self.window.type(self.key)
        self.expect_no_key_on_the_screen()
        self.window.key("Return")
        request = self.provider.next_request()
        self.assertIn(self.key, request["headers"]["authorization"])

    def expect_no_key_on_the_screen(self):
        for words in self.window.words():
            self.assertNotIn(self.key, words)

    def test_a_bad_key_is_told_and_a_good_one_connects(self):
        error = {"error": {"message": "Incorrect API key provided."}}
        self.provider.answer(status=401, body=json.dumps(error))
        self.begin_to_connect("OpenAI")
        self.window.find("Connection error")
        self.window.press("Copy Error", BUTTON)
        wait_for("the error on the clipboard",
                 lambda: b"Incorrect API key provided." in clipboard())
        self.expect_no_key_on_the_screen()
        self.provider.answer(body=self.reply)
        self.window.press("Verify & Connect", BUTTON)  # the key stayed for another try
        self.provider.next_request()
        self.wait_until_closed("Connect OpenAI")
        self.window.find("Reconnect", BUTTON)
        self.assertEqual(stored("velarc.providerSettings.v1")["defaultProvider"], "openAI")
        self.window.wait_for_words("OpenAI connected successfully.")

    def test_a_sheet_that_is_closed_while_it_verifies_connects_all_the_same(self):
        self.provider.answer(silence=True)
        self.begin_to_connect("OpenAI")
        self.window.find("Connecting...", BUTTON)
        self.window.press_in("Connect OpenAI", "Close")
        self.wait_until_closed("Connect OpenAI")
        self.expect_no_key_on_the_screen()
        self.provider.answer(late=True, status=200, body=self.reply)
        self.window.find("Reconnect", BUTTON)

    def test_an_engine_that_is_not_connected_may_be_the_default_and_is_noted(self):
        self.open_section("Default Engine")
        self.window.press("Gemini", "radio button")
        self.window.wait_for_words("Gemini is selected as default, but not connected yet.")
        self.window.wait_for_words("Saved ")
        self.assertEqual(stored("velarc.providerSettings.v1")["defaultProvider"], "gemini")

    def test_every_action_follows_the_default_after_the_reset(self):
        self.open_section("Advanced")
        self.assertNotEqual(self.engines_of_actions(), {"useDefault"})
        self.window.press("Apply Default Engine to All Actions", BUTTON)
        wait_for("the reset", lambda: self.engines_of_actions() == {"useDefault"})
        self.window.wait_for_words("Saved ")

    def engines_of_actions(self):
        return {action["provider"] for action in stored_actions().values()}

    def test_the_usage_of_three_runs_is_read_and_reset(self):
        self.provider.answer(body=self.reply)
        self.begin_to_connect("OpenAI")
        self.wait_until_closed("Connect OpenAI")
        self.leave("Engine Room")
        for run in range(3):
            self.provider.answer(body=self.reply)
            self.run_typed("late") if run == 0 else self.window.press("Run Again", BUTTON)
            self.provider.next_request()
            wait_for("the count", lambda: self.recorded() == 123 * (run + 1))
        self.open_from_more("Usage", "Usage")
        self.window.wait_for_words("369 tokens")
        self.window.wait_for_words("In 108 • Out 261")
        self.window.press("Reset Today Usage", BUTTON)
        self.window.wait_for_words("No usage yet today.")
        self.assertEqual(self.recorded(), 0)

    @staticmethod
    def recorded():
        entries = stored("velarc.usage.daily.v1")["entries"]
        return sum(entry["totalTokens"] for entry in entries)


if __name__ == "__main__":
    unittest.main()
