"""Runs in the window on a display, over the desktop's keyring and the providers' own addresses.

Runs inside tests/session/run_off_the_network.sh as well. The places are those of cloud_cli_test.py,
and VELARC.
"""

import json
import unittest

import canary
from cloud_cli_test import SERVER, clear_key, fixture, store_key, use_engine
from desktop_window import BUTTON, AccessibilityBus, WindowTest, wait_for
from provider import Provider

ACTION = "Brainstorming Ideas"  # follows the default engine
REPLY = "openai_reply_reasoning_before_message.json"
ANSWER = "In a peaceful grove, a fox slept."
STEPS = ["Preparing payload", "Selecting provider", "Generating with OpenAI"]


def setUpModule():
    bus = AccessibilityBus()
    unittest.addModuleCleanup(bus.close)


class CloudTest(WindowTest):
    def setUp(self):
        self.provider = Provider(SERVER)
        self.addCleanup(self.expect_no_more_requests)
        self.key = canary.new_key()
        self.prepare()
        super().setUp()

    def prepare(self):
        store_key("openAI", self.key)
        self.addCleanup(clear_key, "openAI")
        use_engine("openAI")

    def expect_no_more_requests(self):
        self.assertEqual(self.provider.close(), [])

    def run_action(self):
        self.select(ACTION)
        self.start_run("The meeting moved to Monday.")


class Answered(CloudTest):
    def test_each_step_and_the_result_are_shown(self):
        shown = self.window.listen()
        self.provider.answer(silence=True)
        self.run_action()
        self.window.find("Generating with OpenAI")
        self.window.find("Running")
        self.window.find(f"Action: {ACTION}")
        request = self.provider.next_request()
        self.assertEqual(request["headers"]["authorization"], f"Bearer {self.key}")
        self.provider.answer(late=True, body=fixture(REPLY))
        self.window.wait_for_words(ANSWER)
        self.window.find("Result • OpenAI")
        steps = list(dict.fromkeys(name for name in shown if name in STEPS))
        self.assertEqual(steps, STEPS)

    def test_the_details_tell_of_the_request(self):
        self.provider.answer(body=fixture(REPLY))
        self.run_action()
        self.provider.next_request()
        self.window.press("Details", BUTTON)
        self.window.press("Request")
        self.assertIn("The meeting moved to Monday.",
                      self.press_and_paste_elsewhere("Copy Request"))
        self.window.press("Info")
        self.assertIn("HTTP status: 200", self.press_and_paste_elsewhere("Copy Info"))

    def test_cancel_drops_the_request(self):
        self.provider.answer(silence=True)
        self.run_action()
        self.provider.next_request()
        self.window.press("Cancel", BUTTON)
        self.window.find("Canceled.")

    def test_the_window_closes_while_the_provider_is_silent(self):
        self.provider.answer(silence=True)
        self.run_action()
        self.provider.next_request()
        self.assertEqual(self.window.close(), (0, ""))


class Failing(CloudTest):
    def expect_error_then_retry(self):
        self.window.find("Request failed for provider OpenAI.")
        self.window.find("Issue • OpenAI")
        self.provider.answer(body=fixture(REPLY))
        self.window.press("Retry", BUTTON)
        self.provider.next_request()
        self.window.wait_for_words(ANSWER)

    def test_a_refused_key_is_told_and_retry_runs_with_the_same_input(self):
        refusal = {"error": {"message": "This key was revoked on Tuesday."}}
        self.provider.answer(status=401, body=json.dumps(refusal))
        self.run_action()
        self.provider.next_request()
        self.window.press("Technical details", BUTTON)
        self.assertIn("This key was revoked on Tuesday.",
                      self.press_and_paste_elsewhere("Copy Details"))
        self.expect_error_then_retry()
        self.assertEqual(*(request["body"] for request in self.provider.requests))

    def test_a_connection_that_breaks_off_is_told_and_can_be_retried(self):
        self.provider.answer(close=True)
        self.run_action()
        self.provider.next_request()
        self.expect_error_then_retry()

    def test_without_a_network_the_error_is_told(self):
        self.assertEqual(self.provider.stop(), [])
        self.run_action()
        self.window.find("Request failed for provider OpenAI.")
        self.window.press("Technical details", BUTTON)
        self.assertIn("Connection refused", self.press_and_paste_elsewhere("Copy Details"))


class WithoutKeys(CloudTest):
    """Nobody serves secrets in this session."""

    def prepare(self):
        use_engine("openAI")

    def test_without_a_secret_store_the_engine_is_offered_to_be_connected(self):
        self.run_action()
        self.window.find("OpenAI is not connected.")
        self.window.press("Connect OpenAI", BUTTON)
        wait_for("the sheet", lambda: self.window.named("Connect OpenAI", "dialog"))


if __name__ == "__main__":
    unittest.main()
