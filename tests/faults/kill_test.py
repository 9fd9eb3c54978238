"""The window and the terminal program, killed at random moments of a session that goes on by itself.

VELARC_KILLS tells how often; VELARC_KILL_SEED is the seed of the moments, and is printed.
"""

import os
import random
import signal
import subprocess
import threading
import unittest

from faults import BIN, JOKE, WINDOW_NAME, FaultTest, Store, owner_process, run, wait_until

KILLS = int(os.environ.get("VELARC_KILLS", "8"))
SEED = int(os.environ.get("VELARC_KILL_SEED", random.randrange(10**6)))
LATEST = 1.2  # seconds, from the start of a program to its end


class Kills(FaultTest):
    def setUp(self):
        super().setUp()
        self.random = random.Random(SEED)
        self.titles = [action["title"] for action in self.actions[:8]]
        print(f"seed {SEED}, {KILLS} kills")

    def moment(self):
        return self.random.uniform(0, LATEST)

    def test_a_killed_window_loses_nothing_that_was_written(self):
        # What it has acknowledged is there, and what it was about is either there or not.
        window = self.start_window()
        self.select_and_see(self.keep)  # a first start selects for itself
        window.kill()
        window.wait()
        wait_until(lambda: not owner_process(WINDOW_NAME), "the end of its name")
        for _ in range(KILLS):
            window = self.launch("velarc", stderr=subprocess.DEVNULL)
            user = User(self, window)
            user.start()
            try:
                window.wait(self.moment())
            except subprocess.TimeoutExpired:
                pass
            self.assertIsNone(window.poll(), "it ended by itself")
            window.send_signal(signal.SIGKILL)
            window.wait()
            user.join()
            self.assertIn(self.selected(), user.possible())
            self.assertEqual(run("velarc-cli", "actions"), (0, self.listed, ""))
            wait_until(lambda: not owner_process(WINDOW_NAME), "the end of its name")
        print(f"{User.acknowledged} selections were acknowledged")
        self.expect_all_well()

    def test_a_killed_terminal_program_loses_nothing(self):
        for _ in range(KILLS):
            target = self.store.file.parent / "answer"
            target.write_text("before")
            process = self.adopt(subprocess.Popen(
                [BIN / "velarc-cli", "run", JOKE, "cats", "--output", str(target)],
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
            try:
                process.wait(self.moment() / 8)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
            answer = target.read_text()
            self.assertTrue(answer == "before" or "cats" in answer, answer)
            self.assertEqual(run("velarc-cli", "actions"), (0, self.listed, ""))
            target.unlink()
        self.expect_all_well()


class User(threading.Thread):
    """Somebody who selects one action after another until the window is gone."""

    acknowledged = 0

    def __init__(self, test, window):
        super().__init__()
        self.test, self.window = test, window
        self.store = Store()
        self.before = self.seen = test.selected()
        self.asked = None
        titles = list(test.titles)
        test.random.shuffle(titles)
        self.actions = [test.action(title) for title in titles]

    def run(self):
        for action in self.actions * 40:
            self.asked = action
            try:
                self.test.select(action)
            except RuntimeError:
                if self.window.poll() is None:
                    continue  # it has not come to its name yet
                return
            if not self._is_stored(action):
                return
            self.seen = action
            User.acknowledged += 1

    def _is_stored(self, action):
        while self.store.layout().get("selectedActionID") != action:
            if self.window.poll() is not None:
                return False
        return True

    def possible(self):
        return {self.seen, self.asked}


if __name__ == "__main__":
    unittest.main()
