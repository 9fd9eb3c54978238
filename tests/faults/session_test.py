"""The parts of a session that die under programs that run: the bus, the secret service, the network.

The session has an unlocked keyring, and a display.
"""

import json
import os
import signal
import subprocess
import tempfile
import unittest

from faults import (BIN, JOKE, SESSION, FaultTest, environment, owner_process, processes, run,
                    wait_until)
from desktop_window import AccessibilityBus, Window
from provider import Provider


def setUpModule():
    bus = AccessibilityBus()
    unittest.addModuleCleanup(bus.close)


ACTION = "Brainstorming Ideas"  # follows the default engine
SECRETS = "org.freedesktop.secrets"
KEY = "sk-of-these-tests"
NOT_CONNECTED = "OpenAI is not connected yet."
KEY_ITEM = ["xdg:schema", "com.tolmar.velarc.ApiKey", "service", "com.tolmar.velarc", "account",
            "openai_api_key"]


class BusDies(FaultTest):
    def setUp(self):
        super().setUp()
        bus = subprocess.Popen(
            ["dbus-daemon", "--nofork", "--print-address",
             f"--config-file={SESSION}/bus.conf", "--address=unix:tmpdir=/tmp"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.bus = self.adopt(bus)
        self.own = environment(DBUS_SESSION_BUS_ADDRESS=bus.stdout.readline().strip())

    def kill_bus(self):
        self.bus.kill()
        self.bus.wait()

    def test_a_window_goes_on_for_the_user_in_front_of_it(self):
        window = self.launch("velarc", env=self.own, stderr=subprocess.PIPE)
        shown = wait_until(lambda: xdotool("search", "--onlyvisible", "--pid", str(window.pid)),
                           "the window on the display")
        self.kill_bus()
        xdotool("windowfocus", "--sync", shown.split()[0])
        wait_until(self.run_by_hand, "the run")
        self.assertIsNone(window.poll())
        window.terminate()
        self.assertEqual((window.communicate(timeout=30)[1], window.returncode), (b"", 0))
        self.expect_all_well()

    def run_by_hand(self):
        """Whatever is shown by now: the first keys may come before the editor."""
        xdotool("type", "--delay", "2", "cats")
        xdotool("key", "ctrl+Return")
        return self.store.recent_action()

    def test_the_terminal_answers_without_it(self):
        self.kill_bus()
        status, out, err = run("velarc-cli", "run", JOKE, "cats", env=self.own)
        self.assertEqual((status, err), (0, ""))
        self.assertIn("cats", out)
        self.expect_all_well()

    def test_a_text_that_is_shared_reaches_a_window_without_it(self):
        self.kill_bus()
        self.assertEqual(run("velarc-share", "--action", JOKE, "cats", env=self.own), (0, "", ""))
        self.wait_for_run_of(self.action(JOKE))
        self.end_programs()
        self.expect_all_well()


def xdotool(*arguments):
    return subprocess.run(["xdotool", *arguments], capture_output=True, text=True,
                          check=False).stdout


def answer_of(text):
    return json.dumps({"error": None, "output_text": text})


class CloudTest(FaultTest):
    """OpenAI is the default engine, and connected."""

    def setUp(self):
        super().setUp()
        self.provider = Provider(os.environ["VELARC_SCRIPTED_HTTPS"])
        self.addCleanup(lambda: self.assertEqual(self.provider.close(), []))
        subprocess.run(["secret-tool", "store", "--label=Velarc API key", *KEY_ITEM], input=KEY,
                       text=True, check=True)
        self.store.write("velarc.providerSettings.v1", {"defaultProvider": "openAI"})

    def expect_answer(self):
        self.provider.answer(body=answer_of("From afar."))
        self.assertEqual(run("velarc-cli", "run", ACTION, "x"), (0, "From afar.\n", ""))
        request = self.provider.next_request()
        self.assertEqual(request["headers"]["authorization"], f"Bearer {KEY}")

    def share_for_answer(self):
        """A run in the window that runs; its next one takes a connection of its own."""
        self.provider.answer(body=answer_of("From afar."), headers={"Connection": "close"})
        self.assertEqual(run("velarc-share", "--action", ACTION, "x"), (0, "", ""))
        self.provider.next_request()

    def expect_failure(self):
        status, out, err = run("velarc-cli", "run", ACTION, "x")
        self.assertEqual((status, out), (1, ""))
        self.expect_sentence(err)
        return err

    def expect_all_well(self):
        """Offline, or each run would want an answer."""
        self.store.write("velarc.providerSettings.v1", {"defaultProvider": "localFallback"})
        subprocess.run(["secret-tool", "clear", *KEY_ITEM], check=True)
        super().expect_all_well()


class SecretServiceDies(CloudTest):
    def kill_keyring(self):
        os.kill(wait_until(lambda: owner_process(SECRETS), "the keyring"), signal.SIGKILL)
        wait_until(lambda: not owner_process(SECRETS), "the keyring's end")

    def start_keyring(self):
        with tempfile.TemporaryFile() as password:
            password.write(f"{os.environ['VELARC_SESSION_PASSWORD']}\n".encode())
            password.seek(0)
            self.adopt(subprocess.Popen(
                ["gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets"],
                stdin=password, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        wait_until(lambda: owner_process(SECRETS), "the keyring")
        wait_until(lambda: subprocess.run(["secret-tool", "lookup", *KEY_ITEM], check=False,
                                          capture_output=True).stdout, "the key")

    def test_runs_fail_without_it_and_work_again_behind_it(self):
        window = Window(BIN / "velarc")
        self.addCleanup(window.close)
        self.expect_answer()
        self.share_for_answer()
        window.wait_for_words("From afar.")
        self.kill_keyring()
        self.assertEqual(self.expect_failure(), f"velarc-cli: {NOT_CONNECTED}\n")
        self.assertEqual(run("velarc-share", "--action", ACTION, "x"), (0, "", ""))
        window.wait_for_words("Connect OpenAI to run this action.")
        self.start_keyring()
        self.expect_answer()
        self.share_for_answer()
        window.wait_for_words("From afar.")
        self.assertEqual(window.close(), (0, ""))
        self.expect_all_well()


class NetworkDies(CloudTest):
    # A connection that is reset before it is encrypted is made anew: nothing was sent on it.
    PHASES = [("accepted", {}), ("encrypted", {}),
              ("encrypted", {"reset": True}), ("head", {}), ("head", {"reset": True}),
              ("request", {}), ("request", {"reset": True}),
              ("reply", {"raw": "HTTP/1.1 200 OK\r\nContent-Le"}),
              ("reply", {"raw": "HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\n{\"output_text\":"}),
              ("reply", {"raw": "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n{\"out"})]

    def test_a_run_of_the_terminal_fails_with_a_sentence_in_each_phase(self):
        for phase, details in self.PHASES:
            with self.subTest(phase, **details):
                self.provider.answer(**{"break": phase}, **details)
                self.expect_failure()
                self.expect_answer()
        self.expect_all_well()

    def test_a_window_tells_it_in_each_phase_and_goes_on(self):
        window = Window(BIN / "velarc")
        self.addCleanup(window.close)
        for phase, details in self.PHASES:
            with self.subTest(phase, **details):
                self.provider.answer(**{"break": phase}, **details)
                self.assertEqual(run("velarc-share", "--action", ACTION, "x"), (0, "", ""))
                window.wait_for_words("Issue • OpenAI")
                self.share_for_answer()
                window.wait_for_words("From afar.")
        self.assertEqual(window.close(), (0, ""))
        self.expect_all_well()


if __name__ == "__main__":
    unittest.main()
