"""velarc-cli as it is installed, over the desktop's keyring and the providers' own addresses.

Runs inside tests/session/run_off_the_network.sh and tests/session/run_in_session.sh, with the
programs' places in VELARC_CLI and VELARC_SCRIPTED_HTTPS and the fixtures' in VELARC_FIXTURES.
"""

import json
import os
import resource
import signal
import sqlite3
import subprocess
import unittest
from pathlib import Path

import canary
from provider import Provider

CLI = os.environ["VELARC_CLI"]
SERVER = os.environ["VELARC_SCRIPTED_HTTPS"]
WIRE = Path(os.environ["VELARC_FIXTURES"]) / "wire"
SESSION = Path(os.environ["VELARC_SESSION"])
STORE = Path(os.environ["XDG_DATA_HOME"]) / "velarc" / "group.com.tolmar.velarc.sqlite"
ACTION = "Brainstorming Ideas"  # follows the default engine
ON_DEVICE_ACTION = "One-Sentence Summary"
ACCOUNTS = {
    "openAI": "openai_api_key",
    "gemini": "gemini_api_key",
    "anthropic": "anthropic_api_key",
}


def fixture(name):
    return (WIRE / name).read_text(encoding="utf-8")


def attributes(provider):
    return ["xdg:schema", "com.tolmar.velarc.ApiKey", "service", "com.tolmar.velarc", "account",
            ACCOUNTS[provider]]


def store_key(provider, key):
    subprocess.run(["secret-tool", "store", "--label=Velarc API key", *attributes(provider)],
                   input=key, text=True, check=True)


def clear_key(provider):
    subprocess.run(["secret-tool", "clear", *attributes(provider)], check=True)


def use_engine(provider):
    """Makes it the default engine, as the settings screen stores it."""
    cli("actions")  # makes the store
    settings = json.dumps({"defaultProvider": provider}).encode()
    with sqlite3.connect(STORE) as store:
        store.execute("INSERT OR REPLACE INTO defaults VALUES ('velarc.providerSettings.v1', ?)",
                      [settings])
    store.close()


def allow_cores():
    _, most = resource.getrlimit(resource.RLIMIT_CORE)
    resource.setrlimit(resource.RLIMIT_CORE, (most, most))


def cli_process(*arguments, **options):
    return subprocess.Popen([CLI, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, preexec_fn=allow_cores, **options)


def cli(*arguments):
    """Status, standard output and standard error."""
    with cli_process(*arguments) as process:
        out, err = process.communicate(timeout=60)
    return process.returncode, out.decode(), err.decode()


class CloudCliTest(unittest.TestCase):
    def setUp(self):
        self.provider = Provider(SERVER)
        self.key = canary.new_key()
        self.addCleanup(self.expect_no_more_requests)

    def expect_no_more_requests(self):
        self.assertEqual(self.provider.close(), [])

    def connect(self, engine):
        store_key(engine, self.key)
        self.addCleanup(clear_key, engine)
        use_engine(engine)

    def run_answered(self, action=ACTION, **answer):
        """One run with its one request."""
        self.provider.answer(**answer)
        ended = cli("run", action, "The meeting moved to Monday.")
        self.provider.next_request()
        return ended


class Runs(CloudCliTest):
    def test_openai_answers_at_its_own_address(self):
        self.connect("openAI")
        body = fixture("openai_reply_reasoning_before_message.json")
        self.assertEqual(self.run_answered(body=body),
                         (0, "In a peaceful grove, a fox slept.\n", ""))
        request = self.provider.requests[0]
        self.assertEqual(request["path"], "/v1/responses")
        self.assertEqual(request["headers"]["host"], "api.openai.com")
        self.assertEqual(request["headers"]["authorization"], f"Bearer {self.key}")
        self.assertIn("The meeting moved to Monday.", request["body"])

    def test_gemini_answers_at_its_own_address(self):
        self.connect("gemini")
        body = fixture("gemini_reply_thought_parts.json")
        self.assertEqual(self.run_answered(body=body),
                         (0, "First I look at the text.\nThe answer is 4.\nOr 5.\n", ""))
        request = self.provider.requests[0]
        self.assertEqual(request["path"], "/v1beta/models/gemini-2.5-flash:generateContent")
        self.assertEqual(request["headers"]["host"], "generativelanguage.googleapis.com")
        self.assertEqual(request["headers"]["x-goog-api-key"], self.key)

    def test_anthropic_answers_at_its_own_address(self):
        self.connect("anthropic")
        body = fixture("anthropic_reply_thinking_and_tools.json")
        self.assertEqual(self.run_answered(body=body), (0, "Hello!\nHow are you?\n", ""))
        request = self.provider.requests[0]
        self.assertEqual(request["path"], "/v1/messages")
        self.assertEqual(request["headers"]["host"], "api.anthropic.com")
        self.assertEqual(request["headers"]["x-api-key"], self.key)

    def test_on_device_action_falls_back_to_openai(self):
        self.connect("openAI")
        body = '{"output_text":"from afar"}'
        self.assertEqual(self.run_answered(action=ON_DEVICE_ACTION, body=body),
                         (0, "from afar\n", ""))


class Failures(CloudCliTest):
    def test_refused_key_gives_the_sentence_of_the_provider(self):
        for engine in ACCOUNTS:
            with self.subTest(engine):
                self.connect(engine)
                body = json.dumps({"error": {"message": "This key was revoked on Tuesday."}})
                self.assertEqual(self.run_answered(status=401, body=body),
                                 (1, "", "velarc-cli: This key was revoked on Tuesday.\n"))

    def test_key_in_the_sentence_of_the_provider_is_not_shown(self):
        for engine in ACCOUNTS:
            with self.subTest(engine):
                self.connect(engine)
                body = json.dumps({"error": {"message": f"No such key: {self.key}."}})
                self.assertEqual(self.run_answered(status=401, body=body),
                                 (1, "", "velarc-cli: No such key: [API key].\n"))

    def test_key_in_a_page_of_the_server_is_not_shown(self):
        self.connect("anthropic")
        status, out, err = self.run_answered(status=500, body=f"<p>Bad key {self.key}</p>")
        self.assertEqual((status, out), (1, ""))
        self.assertEqual(err, "velarc-cli: Anthropic request failed with status 500. "
                              "Body: <p>Bad key [API key]</p>\n")

    def test_connection_that_breaks_off_is_a_failure_of_one_request(self):
        self.connect("openAI")
        self.assertEqual(
            self.run_answered(close=True),
            (1, "", "velarc-cli: The connection was closed before a whole reply came.\n"))

    def test_without_a_network_the_run_fails(self):
        self.connect("openAI")
        self.assertEqual(self.provider.stop(), [])
        self.assertEqual(cli("run", ACTION, "text"), (1, "", "velarc-cli: Connection refused\n"))

    def test_certificate_of_a_stranger_is_refused_before_the_request(self):
        self.connect("openAI")
        subprocess.run(["mount", "-t", "tmpfs", "none", "/etc/ssl/certs"], check=True)
        self.addCleanup(subprocess.run, ["umount", "/etc/ssl/certs"], check=True)
        status, out, err = cli("run", ACTION, "text")
        self.assertEqual((status, out), (1, ""))
        self.assertRegex(err, "^velarc-cli: SSL handshake failed: .*certificate")

    def test_without_a_key_nobody_is_asked(self):
        use_engine("gemini")
        self.assertEqual(cli("run", ACTION, "text"),
                         (1, "", "velarc-cli: Gemini is not connected yet.\n"))


class Locked(CloudCliTest):
    def test_key_that_stays_locked_is_no_key(self):
        store_key("openAI", self.key)  # for the rest of the session: a locked key stays
        use_engine("openAI")
        subprocess.run(
            ["gdbus", "call", "--session", "--dest", "org.freedesktop.secrets", "--object-path",
             "/org/freedesktop/secrets", "--method", "org.freedesktop.Secret.Service.Lock",
             "['/org/freedesktop/secrets/collection/login']"],
            check=True, stdout=subprocess.DEVNULL)
        self.assertEqual(cli("run", ACTION, "text"),
                         (1, "", "velarc-cli: OpenAI is not connected yet.\n"))


class Canary(CloudCliTest):
    """The key is in the keyring and in the request, and nowhere else."""

    def setUp(self):
        super().setUp()
        self.bus = canary.BusCapture()
        self.addCleanup(self.bus.close)

    def expect_nowhere(self, *outputs):
        for output in outputs:
            self.assertFalse(canary.holds(output.encode(), self.key))
        found, count = canary.files_that_hold(self.key, SESSION)
        self.assertEqual(found, [])
        print(f"searched {count} files below the session's folder")

    def expect_nowhere_on_the_bus(self):
        messages = self.bus.messages()
        self.assertFalse(canary.holds(messages, self.key))
        self.assertIn(b"org.freedesktop.Secret.", messages)
        print(f"searched {len(messages)} bytes of bus messages")

    def test_files_outputs_and_bus_do_not_hold_it(self):
        for engine in ACCOUNTS:
            with self.subTest(engine):
                self.connect(engine)
                text = json.dumps({"output_text": "Done.", "content": [
                    {"type": "text", "text": "Done."}], "candidates": [
                        {"content": {"parts": [{"text": "Done."}]}}]})
                status, out, err = self.run_answered(body=text)
                self.assertEqual((status, out, err), (0, "Done.\n", ""))
                self.expect_nowhere(out, err)
                body = json.dumps({"error": {"message": f"Bad: {self.key}", "type": self.key}})
                status, out, err = self.run_answered(status=403, body=body)
                self.assertEqual((status, err), (1, "velarc-cli: Bad: [API key]\n"))
                self.expect_nowhere(out, err)
                self.assertIn(self.key, json.dumps(self.provider.requests[-1]["headers"]))
                self.assertNotIn(self.key, self.provider.requests[-1]["body"])
                self.assertNotIn(self.key, self.provider.requests[-1]["path"])
        self.assertTrue(STORE.exists())
        self.expect_nowhere_on_the_bus()

    def test_process_that_waits_for_its_reply_shows_it_nowhere(self):
        self.connect("openAI")
        self.provider.answer(silence=True)
        with cli_process("run", ACTION, "text") as process:
            self.provider.next_request()
            texts = canary.process_files(process.pid)
            process.kill()
            out, err = process.communicate(timeout=10)
        self.assertIn(b"velarc-cli", texts["cmdline"])
        self.assertIn(b"VELARC_SESSION", texts["environ"])
        for name, text in texts.items():
            self.assertFalse(canary.holds(text, self.key), name)
        self.expect_nowhere(out.decode(), err.decode())
        self.expect_nowhere_on_the_bus()

    def test_crash_with_the_key_in_memory_leaves_no_core(self):
        self.connect("openAI")
        self.provider.answer(silence=True)
        process = cli_process("run", ACTION, "text", cwd=SESSION)
        self.provider.next_request()
        process.send_signal(signal.SIGABRT)
        _, status = os.waitpid(process.pid, 0)
        process.returncode = status
        process.communicate()
        self.assertEqual(os.WTERMSIG(status), signal.SIGABRT)
        self.assertFalse(os.WCOREDUMP(status))
        self.expect_nowhere()

    def test_search_would_find_it_in_a_file_and_on_the_bus(self):
        file = SESSION / "home" / "careless"
        for written in [self.key.encode(), self.key.encode("utf-16-le"),
                        b"x" + canary.base64.b64encode(b"ab" + self.key.encode())]:
            file.write_bytes(written)
            self.addCleanup(file.unlink, missing_ok=True)
            self.assertEqual(canary.files_that_hold(self.key, SESSION)[0], [file])
        subprocess.run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                        "--object-path", "/", "--method", "org.freedesktop.DBus.NameHasOwner",
                        self.key.replace("sk-", "sk.")], check=True, stdout=subprocess.DEVNULL)
        self.assertTrue(canary.holds(self.bus.messages(), self.key.replace("sk-", "sk.")))


if __name__ == "__main__":
    unittest.main()
