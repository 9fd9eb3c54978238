"""A stranger's first hour with the installed program, from the first start to the next day's session.

Runs inside tests/e2e/first_hour.sh, which makes the sessions, the display and the home that both
sessions share. Each class is a session, and its steps follow one another: a later one stands on what
an earlier one left.
"""

import base64
import json
import os
import subprocess
import unittest
from pathlib import Path

import canary
from desktop import (HANDOFF_URL, PREFIX, WINDOW_NAME, Store, call, handoff, owner_process,
                     processes, run)
from desktop_window import (BUTTON, DOWN, EDITOR, TEXT, AccessibilityBus, Atspi, Window,
                            clipboard, copy, wait_for)
from provider import Provider

HOME = Path(os.environ["HOME"])
DATA = Path(os.environ["XDG_DATA_HOME"])
DOCUMENTS = Path(os.environ["VELARC_FIXTURES"]) / "documents"
KEPT = HOME / "first-hour.json"  # what the first session tells the next one
PNG = ("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJg"
       "gg==")
KEY_ITEM = ["xdg:schema", "com.tolmar.velarc.ApiKey", "service", "com.tolmar.velarc", "account",
            "openai_api_key"]


class OpenWindow(Window):
    """The window that the desktop has started, not this process."""

    class Process:
        def __init__(self, pid):
            self.pid = pid

        def poll(self):
            return None if Path(f"/proc/{self.pid}").exists() else 0

    def __init__(self):
        number = wait_for("the window on the bus", lambda: owner_process(WINDOW_NAME))
        self.process = self.Process(number)
        self.application = wait_for("the window", self._find_application)
        self.focus()

    def close(self):
        os.kill(self.process.pid, 15)
        wait_for("the window's end", self._has_ended)

    def _has_ended(self):
        return self.process.poll() is not None

    def focused(self):
        """The innermost: the sheets around it have the focus, too."""
        holders = [node for node in self.nodes()
                   if node.get_state_set().contains(Atspi.StateType.FOCUSED)]
        return holders[-1] if holders else None


def answer_of(text):
    """What the cloud engine replies with a text."""
    return json.dumps({"error": None, "output_text": text,
                       "usage": {"input_tokens": 10, "output_tokens": 5, "total_tokens": 15}})


def events():
    return sorted((DATA / "velarc" / "calendars").glob("*/*.ics"))


def register_mail_program(letter):
    """As a mail program's package and its first start do; it writes down what it is opened with."""
    programs = DATA / "applications"
    programs.mkdir(parents=True, exist_ok=True)
    script = HOME / "mail-program"
    script.write_text(f'#!/bin/sh\nprintf %s "$1" >{letter}.part && mv {letter}.part {letter}\n')
    script.chmod(0o755)
    (programs / "mail.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName=Mail\nExec={script} %u\n"
        "MimeType=x-scheme-handler/mailto;\n")
    settings = Path(os.environ["XDG_CONFIG_HOME"])
    settings.mkdir(parents=True, exist_ok=True)
    (settings / "mimeapps.list").write_text(
        "[Default Applications]\nx-scheme-handler/mailto=mail.desktop\n")
    subprocess.run(["update-desktop-database", programs], check=True)


def remembered(name):
    return json.loads(KEPT.read_text())[name]


def remember(**changes):
    kept = json.loads(KEPT.read_text()) if KEPT.exists() else {}
    KEPT.write_text(json.dumps({**kept, **changes}))
    KEPT.chmod(0o600)


def stored_key():
    return subprocess.run(["secret-tool", "lookup", *KEY_ITEM], capture_output=True, text=True,
                          check=False).stdout


class Session(unittest.TestCase):
    """Its steps run in the order of their names, and the first that fails ends the session."""

    failed = False
    opened = None

    @classmethod
    def setUpClass(cls):
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        # As a desktop does when its display is there: what the bus starts gets to know it.
        subprocess.run(["dbus-update-activation-environment", "DISPLAY", "QT_QPA_PLATFORM",
                        "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "NO_AT_BRIDGE=0"], check=True)
        bus = AccessibilityBus()
        cls.addClassCleanup(bus.close)
        cls.provider = Provider(os.environ["VELARC_SCRIPTED_HTTPS"])
        cls.addClassCleanup(lambda: cls.provider.close())
        cls.store = Store()

    def run(self, result=None):
        if Session.failed:
            return result
        before = len(result.failures) + len(result.errors)
        super().run(result)
        Session.failed = len(result.failures) + len(result.errors) > before
        if Session.failed and self.window and self.window.process.poll() is None:
            self.tell_what_is_shown()
        return result

    def tell_what_is_shown(self):
        focus = self.window.focused()
        print(f"The focus is on {focus and focus.get_name()!r}; the window shows:")
        print(", ".join(repr(node.get_name()) for node in self.window.nodes() if node.get_name()))

    @property
    def window(self):
        return type(self).opened

    def open_by(self, *command):
        subprocess.run(command, check=True, stdin=subprocess.DEVNULL, timeout=30)
        type(self).opened = OpenWindow()

    def close_window(self):
        self.window.close()
        self.assertEqual(processes("velarc"), [])

    def fresh_input(self, action=None):
        """Home with an empty editor, whatever was shown before."""
        if self.window.named("Restart", BUTTON):
            self.window.press("Restart", BUTTON)
        self.window.find(EDITOR)
        if action:
            while not self.window.named(action, "list item"):
                self.window.scroll(100, 600, DOWN)
            self.window.press(action, "list item")
            self.window.find(action, BUTTON)
        if self.window.text_of(EDITOR):
            self.window.press("Clear", BUTTON)
        self.window.wait_for_focus(EDITOR)

    def type_and_run(self, text):
        self.window.type(text)
        wait_for("the typed text", lambda: self.window.text_of(EDITOR) == text)
        self.window.key("ctrl+Return")

    def answer(self, text):
        self.provider.answer(body=answer_of(text))


class FirstSession(Session):
    def test_01_the_menu_starts_the_window(self):
        entry = PREFIX / "share/applications/com.tolmar.velarc.desktop"
        self.open_by("gio", "launch", str(entry))
        self.window.find("Ready")

    def test_02_the_first_run_needs_no_network(self):
        self.window.wait_for_focus(EDITOR)
        self.type_and_run(TEXT)
        self.window.wait_for_words("Result • Local Preview Engine")
        copy(b"before")
        self.window.press("Copy", BUTTON)
        wait_for("the result on the clipboard", lambda: clipboard() not in (b"", b"before"))

    def test_03_a_refused_key_is_told_and_not_kept(self):
        self.open_connect_sheet()
        self.provider.answer(status=401, body=json.dumps(
            {"error": {"message": "This key was revoked on Tuesday."}}))
        self.type_key("sk-revoked")
        self.window.wait_for_words("This key was revoked on Tuesday.")
        self.provider.next_request()
        self.assertEqual(stored_key(), "")
        self.window.key("Escape")
        self.window.wait_until_gone("Verify & Connect")

    def open_connect_sheet(self):
        if not self.window.named("Provider Connections"):
            self.window.press("Engine Room", BUTTON)
            self.window.press("Connections")
        self.window.press("Connect", BUTTON)  # the first of the list
        self.window.wait_for_focus("OpenAI API Key")

    def type_key(self, key):
        self.window.type(key)
        self.window.press("Verify & Connect", BUTTON)

    def test_04_a_key_is_verified_and_goes_into_the_keyring(self):
        key = canary.new_key()
        self.open_connect_sheet()
        self.answer("OK")
        self.type_key(key)
        self.window.find("Reconnect", BUTTON)
        request = self.provider.next_request()
        self.assertEqual(request["headers"]["authorization"], f"Bearer {key}")
        self.assertEqual(stored_key(), key)
        remember(key=key)
        if self.window.named("Provider Connections"):
            self.window.wait_until_gone("Connect OpenAI")  # which still fades away
            self.window.key("Escape")
            self.window.wait_until_gone("Provider Connections")

    def test_05_a_run_goes_to_the_cloud(self):
        self.fresh_input("Brainstorming Ideas")
        self.answer("Ten ideas from afar.")
        self.type_and_run("a name for a boat")
        self.window.wait_for_words("Ten ideas from afar.")
        request = self.provider.next_request()
        self.assertIn("a name for a boat", request["body"])
        self.window.find("Result • OpenAI")

    def test_06_files_go_with_a_run(self):
        picture = HOME / "one.png"
        picture.write_bytes(base64.b64decode(PNG))
        self.fresh_input("One-Sentence Summary")
        copy(f"{DOCUMENTS / 'office.pdf'}\n{picture}".encode())
        self.answer("It is a page from an office.")
        self.window.key("ctrl+v")  # the places of files are taken as a drop, and a drop runs at once
        self.window.wait_for_words("It is a page from an office.")
        body = self.provider.next_request()["body"]
        self.assertIn("[PDF office.pdf]", body)
        self.assertIn("data:image/png;base64,", body)

    def test_07_an_event_goes_into_the_calendar(self):
        self.fresh_input("Create Calendar Event")
        self.answer("title: Dentist\nstart: 2030-03-04 09:00\nlocation: Room 4")
        self.type_and_run("the dentist on the fourth of March 2030 at nine, in room 4")
        self.window.wait_for_words('Created calendar event "Dentist".')
        self.provider.next_request()
        self.assertEqual(len(events()), 1)
        self.assertIn(b"SUMMARY:Dentist", events()[0].read_bytes())

    def test_08_a_mail_opens_in_the_program_of_the_user(self):
        letter = HOME / "letter"
        register_mail_program(letter)
        self.fresh_input("Compose Email (Mail App)")
        self.answer("to: ada@example.org\nsubject: Ferry\nbody: It was late again.")
        self.type_and_run("tell ada about the ferry")
        self.provider.next_request()
        wait_for("the mail program", letter.exists)
        address = wait_for("its address", letter.read_text)
        self.assertTrue(address.startswith("mailto:ada@example.org?"), address)
        self.assertIn("subject=Ferry", address)
        self.assertIn("It%20was%20late%20again.", address)

    def test_09_another_program_shares_a_text(self):
        self.answer("Why did the cat sit on the computer?")
        shared = run("velarc-share", "--action", "Tell Me a Joke", "--source", "Notes", "cats")
        self.assertEqual(shared, (0, "", ""))
        self.window.wait_for_words("Why did the cat sit on the computer?")
        self.assertIn("cats", self.provider.next_request()["body"])

    def test_10_an_address_starts_the_window(self):
        self.close_window()
        joke = json.loads(run("velarc-cli", "actions", "--json")[1])[2]
        self.assertEqual(joke["title"], "Tell Me a Joke")
        self.store.write("velarc.share.pendingHandoff.v1", handoff("dogs", joke["id"]))
        self.answer("A dog walks into a harbour.")
        self.open_by("gio", "open", HANDOFF_URL)
        self.window.wait_for_words("A dog walks into a harbour.")
        self.provider.next_request()

    def test_11_the_search_of_the_desktop_finds_an_action(self):
        self.close_window()
        search = ("com.tolmar.velarc.Actions", "/com/tolmar/velarc/SearchProvider")
        found = call(*search, "org.gnome.Shell.SearchProvider2.GetInitialResultSet", "['invoice']")
        identifier = found.split("'")[1]
        self.assertIn("Extract Invoice Info", call(
            *search, "org.gnome.Shell.SearchProvider2.GetResultMetas", f"['{identifier}']"))
        self.assertEqual(processes("velarc"), [])
        call(*search, "org.gnome.Shell.SearchProvider2.ActivateResult", identifier, "['invoice']",
             "0")
        type(self).opened = OpenWindow()
        self.window.find("Extract Invoice Info", BUTTON)

    def test_12_the_terminal_does_the_same(self):
        self.answer("Boats, ferries, rafts.")
        self.assertEqual(run("velarc-cli", "run", "Brainstorming Ideas", input=b"things that swim"),
                         (0, "Boats, ferries, rafts.\n", ""))
        self.assertIn("things that swim", self.provider.next_request()["body"])
        self.answer("From afar.")
        status, out, _ = run("velarc-cli", "run", "brainstorming ideas", "x", "--json")
        self.provider.next_request()
        self.assertEqual((status, json.loads(out)["provider"]), (0, "openAI"))

    def test_13_the_window_ends_when_it_is_asked_to(self):
        self.close_window()
        remember(actions=run("velarc-cli", "actions")[1], selected="Extract Invoice Info")


class NextSession(Session):
    """A new bus, and a keyring that was started anew; the home is the same."""

    def test_01_all_is_as_it_was_left(self):
        self.assertEqual(run("velarc-cli", "actions")[1], remembered("actions"))
        self.assertEqual(stored_key(), remembered("key"))
        self.assertEqual(len(events()), 1)

    def test_02_the_window_opens_on_what_was_selected(self):
        self.open_by("gio", "launch", str(PREFIX / "share/applications/com.tolmar.velarc.desktop"))
        self.window.find(remembered("selected"), BUTTON)

    def test_03_the_key_is_found_again(self):
        self.fresh_input("Brainstorming Ideas")
        self.answer("As good as yesterday.")
        self.type_and_run("once more")
        self.window.wait_for_words("As good as yesterday.")
        request = self.provider.next_request()
        self.assertEqual(request["headers"]["authorization"], f"Bearer {remembered('key')}")

    def test_04_the_window_ends_when_it_is_asked_to(self):
        self.close_window()
        remember(selected="Brainstorming Ideas")


if __name__ == "__main__":
    unittest.main()
