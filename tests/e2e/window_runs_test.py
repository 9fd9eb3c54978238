"""Good and bad days of a run in the window on a display, over engines that only act as if.

The places are in VELARC_DEMO, VELARC_DRAG_SOURCE and VELARC_FIXTURES. The actions are named for what
comes of them.
"""

import base64
import os
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from desktop_window import (BUTTON, EDITOR, AccessibilityBus, WindowTest, clipboard, copy,
                            move_pointer, wait_for)

DEMO = os.environ["VELARC_DEMO"]
DRAG_SOURCE = os.environ["VELARC_DRAG_SOURCE"]
DOCUMENTS = Path(os.environ["VELARC_FIXTURES"]) / "documents"
REFINE = "Refine this output..."
PNG = base64.b64decode("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5E"
                       "rkJggg==")


def setUpModule():
    bus = AccessibilityBus()
    unittest.addModuleCleanup(bus.close)


def drawing(inner):
    return f"<svg xmlns='http://www.w3.org/2000/svg'>{inner}</svg>"


def bomb_of_shapes():
    """Ten to the power of eleven of them."""
    levels = "".join(f"<g id='u{level}'>" + f"<use href='#u{level - 1}' x='.1'/>" * 10 + "</g>"
                     for level in range(1, 12))
    return drawing(f"<defs><rect id='u0' width='1' height='1'/>{levels}</defs><use href='#u11'/>")


def bomb_of_words():
    levels = "".join(f"<!ENTITY a{level} '{f'&a{level - 1};' * 10}'>" for level in range(1, 12))
    return f"<!DOCTYPE svg [<!ENTITY a0 'haha'>{levels}]>" + drawing("<text>&a11;</text>")


def helpers(process):
    """The programs that a process has started to read documents."""
    children = Path(f"/proc/{process.pid}/task/{process.pid}/children")
    threads = Path(f"/proc/{process.pid}/task").glob("*/children")
    return [int(child) for file in {children, *threads} for child in file.read_text().split()]


class RunsTest(WindowTest):
    program = DEMO

    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def file(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path

    def run_action(self, action, text="three words here"):
        self.select(action)
        self.start_run(text)


class Files(RunsTest):
    def drag(self, *files):
        """From another program into the middle of the window."""
        source = subprocess.Popen([DRAG_SOURCE, "1220", "10", *map(str, files)],
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(source.communicate)
        self.addCleanup(source.kill)
        wait_for("the other program", lambda: subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(source.pid)],
            capture_output=True, check=False).stdout)
        move_pointer(1235, 25)
        subprocess.run(["xdotool", "mousedown", "1"], check=True)
        for x, y in ((1230, 40), (1100, 200), (800, 400), (790, 410)):
            move_pointer(x, y)
        self.assertEqual(source.stdout.readline(), "over\n")
        subprocess.run(["xdotool", "mouseup", "1"], check=True)
        self.assertEqual(source.stdout.readline(), "copied\n")

    def test_of_three_dropped_files_two_go_into_the_run_and_the_bad_one_is_told(self):
        self.select("Echo the Input")
        self.drag(self.file("one.png", PNG), DOCUMENTS / "office.pdf", self.file("three.docx", b"x"))
        self.window.press("Back", BUTTON)
        self.window.find("one.png")
        self.window.find("office.pdf")
        self.assertIsNone(self.window.named("three.docx"))
        self.window.find("Unsupported file type: .docx (three.docx)")

    def test_attachments_of_a_canceled_run_can_be_taken_away(self):
        self.select("Answer Slowly")
        self.drag(self.file("one.png", PNG), DOCUMENTS / "office.pdf")
        self.window.press("Cancel", BUTTON)
        self.window.find("one.png")
        self.window.press("Remove one.png", BUTTON)
        self.window.wait_until_gone("one.png")
        self.window.find("office.pdf")

    def test_a_drop_on_a_result_runs_with_what_was_dropped(self):
        self.select("Echo the Input")
        self.run_to_result("a")
        self.drag(DOCUMENTS / "office.pdf")
        self.window.find("Cancel", BUTTON)
        self.window.press("Back", BUTTON)
        self.window.find("office.pdf")
        self.assertEqual(self.window.text_of(EDITOR), "")

    def test_files_of_which_none_is_good_start_nothing(self):
        self.drag(self.file("three.docx", b"x"))
        self.window.find("Dropped files have no supported content.")
        self.window.find("Unsupported file type: .docx (three.docx)")

    def test_a_missing_file_is_told_and_a_damaged_one_runs_without_its_text(self):
        self.select("Echo the Input")
        damaged = self.file("damaged.pdf", b"%PDF-1.7\nand then nothing of the kind")
        self.drag(damaged, self.folder / "missing.pdf")
        self.window.press("Back", BUTTON)
        self.window.find("Could not read PDF file: missing.pdf")
        self.window.find("damaged.pdf")

    def test_a_drawing_that_would_grow_beyond_measure_is_read_at_once(self):
        self.select("Echo the Input")
        self.drag(self.file("words.svg", bomb_of_words().encode()))
        self.window.press("Back", BUTTON)
        self.window.find("words.svg")

    def test_a_drawing_that_never_ends_holds_up_nothing_and_its_end_is_told(self):
        self.drag(self.file("shapes.svg", bomb_of_shapes().encode()))
        helper = wait_for("the drawing", lambda: helpers(self.window.process))[0]
        self.type_into_the_editor("and the window goes on")
        os.kill(helper, signal.SIGXCPU)  # as the system does at the end of its time
        self.window.find("Could not rasterize SVG file: shapes.svg")

    def test_a_drawing_that_never_ends_does_not_outlive_the_window(self):
        self.drag(self.file("shapes.svg", bomb_of_shapes().encode()))
        helper = wait_for("the drawing", lambda: helpers(self.window.process))[0]
        self.assertEqual(self.window.close(), (0, ""))
        wait_for("its end", lambda: not Path(f"/proc/{helper}").exists())

    def test_pasted_places_of_files_run_as_files(self):
        self.select("Echo the Input")
        copy(f"{self.file('one.png', PNG)}\n{DOCUMENTS / 'office.pdf'}".encode())
        self.window.wait_for_focus(EDITOR)
        self.window.key("ctrl+v")
        self.window.press("Back", BUTTON)
        self.window.find("one.png")
        self.window.find("office.pdf")
        self.assertEqual(self.window.text_of(EDITOR), "")


class Waiting(RunsTest):
    def test_cancel_in_the_middle_leads_back_to_the_input(self):
        self.run_action("Answer Slowly")
        self.window.find("Generating with OpenAI")
        self.window.find("Action: Answer Slowly")
        self.window.press("Cancel", BUTTON)
        self.window.find("Canceled.")
        self.window.wait_for_focus(EDITOR)
        self.assertEqual(self.window.text_of(EDITOR), "three words here")

    def test_escape_cancels_too(self):
        self.run_action("Answer Slowly")
        self.window.find("Cancel", BUTTON)
        self.window.key("Escape")
        self.window.find("Canceled.")

    def test_the_window_closes_in_the_middle_of_a_run(self):
        self.run_action("Answer Slowly")
        self.window.find("Cancel", BUTTON)
        self.assertEqual(self.window.close(), (0, ""))


class Results(RunsTest):
    def show_result(self):
        self.select("Echo the Input")
        self.run_to_result("three words here")

    def test_refine_asks_for_another_turn_on_the_result(self):
        self.show_result()
        self.window.press("Expand", BUTTON)
        self.window.click(self.window.find(REFINE))
        self.window.wait_for_focus(REFINE)
        self.window.type("in capitals")
        self.window.press("Refine", BUTTON)
        self.window.wait_for_words("Refine request:\nin capitals")
        self.window.wait_for_words("Previous output:\nthree words here")
        self.window.find("Expand", BUTTON)  # a new result starts collapsed

    def test_the_text_to_refine_with_outlives_a_collapse(self):
        self.show_result()
        self.window.press("Expand", BUTTON)
        self.window.click(self.window.find(REFINE))
        self.window.wait_for_focus(REFINE)
        self.window.type("shorter")
        self.window.press("Collapse", BUTTON)
        self.window.wait_until_gone(REFINE)
        self.window.press("Expand", BUTTON)
        wait_for("the text", lambda: self.window.text_of(REFINE) == "shorter")

    def test_each_tab_of_the_details_is_shown_and_copied(self):
        self.show_result()
        self.window.press("Details", BUTTON)
        self.window.find("Hide Details", BUTTON)
        self.assertEqual(self.press_and_paste_elsewhere("Copy Response"), "three words here")
        self.window.press("Request")
        self.assertEqual(self.press_and_paste_elsewhere("Copy Request"), "three words here")
        self.window.press("Info")
        self.window.wait_for_words("<empty>")
        self.assertEqual(self.press_and_paste_elsewhere("Copy Info"),
                         "Provider: OpenAI\nModel: echo\nEndpoint: \nCharacters: 16")
        self.window.press("Hide Details", BUTTON)
        self.window.wait_until_gone("Copy Info")

    def test_restart_leads_to_an_input_that_is_ready(self):
        self.show_result()
        self.window.press("Restart", BUTTON)
        self.window.wait_for_focus(EDITOR)
        self.window.find("Ready")

    def test_run_again_shows_another_result(self):
        self.show_result()
        self.window.press("Run Again", BUTTON)
        self.window.find("Cancel", BUTTON)
        self.window.find("Run Again", BUTTON)

    def test_a_picture_is_shown_and_copied(self):
        self.run_action("Draw an Image")
        self.window.find("Result image")
        self.assertIsNone(self.window.named("Expand to refine"))
        copy(b"before")
        self.window.press("Copy", BUTTON)
        wait_for("the picture", lambda: clipboard("image/png").startswith(b"\x89PNG"))

    def test_a_picture_that_does_not_decode_is_told(self):
        self.tolerated = "libpng error: Read Error\n"  # the decoder's own word
        self.run_action("Draw a Broken Image")
        self.window.find("Image generated, but preview could not be rendered.")

    def test_a_page_is_shown_by_the_name_of_its_file(self):
        self.run_action("Make a PDF")
        self.window.wait_for_words(".pdf")
        self.window.find("Share")


class Failures(RunsTest):
    def test_an_error_can_be_retried_and_its_details_copied(self):
        self.run_action("Have the Key Refused")
        self.window.find("Error")
        self.window.find("Request failed for provider OpenAI.")
        self.window.find("Issue • OpenAI")
        self.window.press("Technical details")
        details = self.press_and_paste_elsewhere("Copy Details")
        self.assertIn("OpenAI API error (401): Incorrect API key provided.", details)
        self.window.press("Retry", BUTTON)
        self.window.find("Cancel", BUTTON)
        self.window.find("Retry", BUTTON)
        self.window.press("Restart", BUTTON)
        self.window.wait_for_focus(EDITOR)

    def test_an_engine_without_a_key_is_offered_to_be_connected(self):
        self.run_action("Miss a Key")
        self.window.find("Anthropic is not connected.")
        self.window.press("Connect Anthropic", BUTTON)
        self.window.find("Connect Anthropic", "dialog")
        self.window.key("Escape")
        self.window.find("Retry", BUTTON)


if __name__ == "__main__":
    unittest.main()
