"""The programs as they are installed in a prefix of their own, and the session around them.

Runs inside tests/session/run_in_session.sh, with the prefix in VELARC_PREFIX.
"""

import json
import os
import re
import shutil
import signal
import socket
import sqlite3
import subprocess
import time
import unittest
import uuid
from pathlib import Path

PREFIX = Path(os.environ["VELARC_PREFIX"])
BIN = PREFIX / "bin"
SESSION = Path(os.environ["VELARC_SESSION"])
WINDOW_NAME = "com.tolmar.velarc"
WINDOW_PATH = "/com/tolmar/velarc"
HANDOFF_URL = "velarc://share-handoff"
RESULT_URL = "velarc://share-result"
HANDOFF_KEY = "velarc.share.pendingHandoff.v1"
RESULT_KEY = "velarc.share.latestResult.v1"
LAYOUT_KEY = "velarc.homeLayout.v1"
HAS_BUS = "DBUS_SESSION_BUS_ADDRESS" in os.environ
PATIENCE = 30  # seconds, for what comes in a moment unless something is broken


def wait_until(holds, what):
    """Waits for what another process does; gives what `holds` gave."""
    bound = time.monotonic() + PATIENCE
    while not (value := holds()):
        if time.monotonic() > bound:
            raise AssertionError(f"it did not come to pass: {what}")
        time.sleep(0.02)  # between two looks at another process
    return value


def environment(**changes):
    """This process's environment with changes; None takes a variable away."""
    merged = {**os.environ, **changes}
    return {name: value for name, value in merged.items() if value is not None}


def start(program, *arguments, **options):
    options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.Popen([BIN / program, *arguments], **options)


def run(program, *arguments, env=None, **options):
    """Status, standard output and standard error."""
    options.setdefault("stdin", subprocess.DEVNULL)
    if "input" in options:
        del options["stdin"]
    ended = subprocess.run([BIN / program, *arguments], stdout=subprocess.PIPE,
                           stderr=subprocess.PIPE, timeout=PATIENCE, env=env, **options)
    return ended.returncode, ended.stdout.decode(), ended.stderr.decode()


def gdbus(*arguments):
    """What a call gives, as gdbus prints it."""
    ended = subprocess.run(["gdbus", *arguments], capture_output=True, text=True, check=False,
                           timeout=PATIENCE)
    if ended.returncode != 0:
        raise RuntimeError(ended.stderr)
    return ended.stdout.strip()


def call(destination, path, method, *arguments):
    return gdbus("call", "--session", "--dest", destination, "--object-path", path, "--method",
                 method, *arguments)


def owner_process(name):
    """The number of the process that has a name on the bus; none where nobody has."""
    try:
        answer = call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                      "org.freedesktop.DBus.GetConnectionUnixProcessID", name)
    except RuntimeError:
        return None
    return int(re.search(r"uint32 (\d+)", answer)[1])


def processes(program):
    """The numbers of the processes of an installed program. Their other files are the kernel's."""
    found = []
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            words = (folder / "cmdline").read_bytes().split(b"\0")
        except OSError:
            continue
        if words[0] == os.fsencode(BIN / program):
            found.append(int(folder.name))
    return found


def listens(runtime_folder):
    """Whether a window without a bus takes what later starts hand over. A socket alone says
    nothing: a killed window leaves its own behind."""
    with socket.socket(socket.AF_UNIX) as peer:
        return peer.connect_ex(str(Path(runtime_folder) / "velarc.socket")) == 0


class Store:
    """The user's store, as any program of the user reads and writes it."""

    def __init__(self, data_home=None):
        data_home = Path(data_home or os.environ["XDG_DATA_HOME"])
        self.file = data_home / "velarc" / "group.com.tolmar.velarc.sqlite"

    def read(self, key):
        with self._open() as connection:
            row = connection.execute("SELECT value FROM defaults WHERE key = ?", [key]).fetchone()
        connection.close()
        return row and row[0]

    def write(self, key, value):
        """Bytes as they are, anything else as JSON."""
        document = value if isinstance(value, bytes) else json.dumps(value).encode()
        with self._open() as connection:
            connection.execute("INSERT OR REPLACE INTO defaults VALUES (?, ?)", [key, document])
        connection.close()

    def _open(self):
        return sqlite3.connect(self.file, timeout=PATIENCE)

    def layout(self):
        return json.loads(self.read(LAYOUT_KEY) or b"{}")

    def recent_action(self):
        """The action that ran last."""
        return next(iter(self.layout().get("recentActionIDs", [])), None)


def handoff(text, action=None):
    record = {"inputText": text, "createdAt": 0}
    return {**record, "actionID": action} if action else record


class DesktopTest(unittest.TestCase):
    def setUp(self):
        self.addCleanup(self.end_programs)
        self.store = Store()
        shutil.rmtree(self.store.file.parent, ignore_errors=True)  # another test's
        status, out, err = run("velarc-cli", "actions", "--json")  # makes it
        self.assertEqual((status, err), (0, ""))
        self.actions = json.loads(out)

    def launch(self, program, *arguments, **options):
        """A program that the test outlives, however it goes."""
        return self.adopt(start(program, *arguments, **options))

    def launch_window(self):
        """A window that takes what later starts hand over."""
        window = self.launch("velarc")
        if HAS_BUS:
            wait_until(lambda: owner_process(WINDOW_NAME) == window.pid, "the window's name")
        else:
            wait_until(lambda: listens(os.environ["XDG_RUNTIME_DIR"]), "the window's socket")
        return window

    def expect_processes(self, *windows):
        """These and no others, once a start that hands over has ended."""
        expected = sorted(window.pid for window in windows)
        wait_until(lambda: sorted(processes("velarc")) == expected, f"only {expected} run")

    def adopt(self, process):
        def end():
            process.kill()
            process.communicate()
        self.addCleanup(end)
        return process

    def end_programs(self):
        for program in ["velarc", "velarc-cli"]:
            for process in processes(program):
                os.kill(process, signal.SIGKILL)
            wait_until(lambda program=program: not processes(program), f"the end of {program}")

    def action(self, title):
        return next(action["id"] for action in self.actions if action["title"] == title)

    def window(self):
        """The process of the one window, once it is there."""
        found = wait_until(lambda: processes("velarc"), "a window")
        self.assertEqual(len(found), 1)
        return found[0]

    def wait_for_run_of(self, action):
        wait_until(lambda: self.store.recent_action() == action, "the run of the action")

    def expect_one_window_after(self, starters):
        """Of programs that were started at once all but the window itself end with 0."""
        wait_until(lambda: sum(starter.poll() is None for starter in starters) == 1,
                   "the end of all starts but one")
        self.assertEqual([starter.returncode for starter in starters if starter.returncode],
                         [])
        self.assertEqual(len(processes("velarc")), 1)


def new_identifier():
    return str(uuid.uuid4()).upper()
