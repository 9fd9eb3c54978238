"""Programs that may not have more than 200 MB of memory."""

import subprocess
import unittest

from faults import BIN, JOKE, FaultTest

SCOPE = ["systemd-run", "--user", "--scope", "--quiet", "--property=MemoryMax=200M",
         "--property=MemorySwapMax=0"]


def scopes_are_to_be_had():
    try:
        return subprocess.run([*SCOPE, "true"], capture_output=True, check=False).returncode == 0
    except FileNotFoundError:
        return False


@unittest.skipUnless(scopes_are_to_be_had(), "there is no user manager to limit memory by a scope")
class LittleMemory(FaultTest):
    def test_the_terminal_answers(self):
        done = subprocess.run([*SCOPE, BIN / "velarc-cli", "run", JOKE, "cats"],
                              capture_output=True, text=True, check=False, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn("cats", done.stdout)

    def test_a_text_of_eight_megabytes_is_answered_or_refused(self):
        text = "The ferry was late. " * 400_000
        done = subprocess.run([*SCOPE, BIN / "velarc-cli", "run", JOKE, "-"], input=text,
                              capture_output=True, text=True, check=False, timeout=60)
        self.assertIn(done.returncode, (0, 1))
        if done.returncode == 1:
            self.expect_sentence(done.stderr)
        self.expect_all_well()

    def test_the_window_works(self):
        window = self.adopt(subprocess.Popen([*SCOPE, BIN / "velarc"], stderr=subprocess.PIPE))
        self.expect_window_works(window)


if __name__ == "__main__":
    unittest.main()
