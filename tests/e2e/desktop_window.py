"""The window as its user has it: a real display, keyboard, clipboard, and the accessibility bus.

Runs inside tests/session/run_in_session.sh and tests/session/run_under_xvfb.sh, by a Python that has
the bindings of AT-SPI.
"""

import os
import signal
import subprocess
import time
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

BUS_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
EDITOR = "Type, paste, or drop a file — then hit Run"
TEXT = "The harbour ferry was late again. The crew blamed the tide. Nobody minded much."
BUTTON = "push button"
UP, DOWN = 4, 5  # the turns of a wheel, as buttons
PATIENCE = float(os.environ.get("VELARC_PATIENCE", "20"))  # seconds until a thing that must happen has not


def wait_for(what, condition):
    """What `condition` gives as soon as it is something; fails once patience has run out."""
    end = time.monotonic() + PATIENCE
    while True:
        forget()
        try:
            found = condition()
        except GLib.Error:
            found = None  # it went while it was looked at
        if found:
            return found
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.02)


def forget():
    """What the bindings remember of programs is only right while a main loop turns."""
    Atspi.get_desktop(0).clear_cache()
    while GLib.MainContext.default().iteration(False):
        pass


def clipboard(target="UTF8_STRING"):
    command = ["xclip", "-selection", "clipboard", "-out", "-target", target]
    return subprocess.run(command, capture_output=True, check=False, timeout=PATIENCE).stdout


def copy(data, target="UTF8_STRING"):
    """As another program does; xclip stays and answers for it."""
    command = ["xclip", "-selection", "clipboard", "-in", "-target", target]
    subprocess.run(command, input=data, check=True, stdout=subprocess.DEVNULL, timeout=PATIENCE)


def actions_of(node):
    """What a screen reader can have a control do."""
    return [Atspi.Action.get_action_name(node, at) for at in range(node.get_n_actions())]


class AccessibilityBus:
    """The bus that screen readers and programs meet on."""

    def __init__(self):
        os.environ.pop("NO_AT_BRIDGE", None)
        self._launcher = subprocess.Popen([BUS_LAUNCHER, "--launch-immediately"],
                                          stderr=subprocess.DEVNULL)
        while not self._is_there():
            if self._launcher.poll() is not None:
                raise RuntimeError("there is no accessibility bus")
        Atspi.init()

    @staticmethod
    def _is_there():
        command = ["gdbus", "wait", "--session", "--timeout", "1", "org.a11y.Bus"]
        return subprocess.run(command, capture_output=True, check=False).returncode == 0

    def close(self):
        self._launcher.terminate()
        self._launcher.wait()


class Window:
    """A running program, found and driven by what it shows."""

    def __init__(self, program, *arguments, **variables):
        environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", **variables)
        self.process = subprocess.Popen([program, *arguments], env=environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        self._said = None
        self._listeners = []
        self.application = wait_for("the window", self._find_application)
        self.focus()

    def _find_application(self):
        if self.process.poll() is not None:
            raise RuntimeError(f"it ended: {self.process.communicate()[1].decode()}")
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            is_ours = application and application.get_process_id() == self.process.pid
            if is_ours and application.get_child_count() > 0:
                return application
        return None

    def focus(self):
        """There is no window manager to do it."""
        subprocess.run(["xdotool", "windowfocus", "--sync", self.identifier()], check=True)

    def identifier(self):
        """The number by which the display knows the window."""
        return wait_for("the window on the display", lambda: subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", "Velarc"],
            capture_output=True, check=False, text=True).stdout.split())[0]

    def close(self):
        """Ends the program as a log-out does; gives its status and what it said."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        return self.end()

    def end(self):
        """Its status and what it said, once it has ended."""
        if self._said is None:
            self._said = self.process.communicate(timeout=PATIENCE)[1].decode()
        return self.process.returncode, self._said

    # --- What it shows --------------------------------------------------------------------------

    def _showing(self, node=None):
        """Every node that is on the screen, in reading order."""
        node = node or self.application
        for index in range(node.get_child_count()):
            child = node.get_child_at_index(index)
            if child is None:
                continue
            if child.get_state_set().contains(Atspi.StateType.SHOWING):
                yield child
            yield from self._showing(child)

    def nodes(self):
        return wait_for("anything on the screen", lambda: list(self._showing()))

    def named(self, name, role=None):
        """The first node of that name on the screen, or None."""
        for node in self.nodes():
            if node.get_name() == name and role in (None, node.get_role_name()):
                return node
        return None

    def find(self, name, role=None):
        return wait_for(f"'{name}' on the screen", lambda: self.named(name, role))

    def wait_until_gone(self, name):
        wait_for(f"'{name}' to go", lambda: self.named(name) is None)

    def text_of(self, name):
        node = self.find(name)
        return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))

    def wait_for_words(self, words):
        """A node that shows them: by its name, or in its text."""
        return wait_for(f"the words '{words}'", lambda: self._node_with(words))

    def _node_with(self, words):
        for node in self.nodes():
            if words in node.get_name():
                return node
            if "Text" in node.get_interfaces() and words in Atspi.Text.get_text(node, 0, -1):
                return node
        return None

    def focused(self):
        """The innermost node that has the focus: what it stands in says that it has, too."""
        found = None
        for node in self.nodes():
            if node.get_state_set().contains(Atspi.StateType.FOCUSED):
                found = node
        return found

    def wait_for_focus(self, name):
        return wait_for(f"the focus on '{name}'",
                        lambda: (node := self.focused()) and node.get_name() == name)

    def listen(self):
        """The names of all that appears or is renamed from now on, in their order."""
        heard = []
        listener = Atspi.EventListener.new(lambda event: heard.append(event.source.get_name()))
        for kind in ("object:property-change:accessible-name", "object:state-changed:showing",
                     "object:children-changed:add"):
            listener.register(kind)
        self._listeners.append(listener)
        return heard

    # --- What its user does ---------------------------------------------------------------------

    def press(self, name, role=None):
        """As a screen reader does."""
        node = self.find(name, role)
        actions = actions_of(node)
        assert "Press" in actions, f"'{name}' cannot be pressed: {actions}"
        Atspi.Action.do_action(node, actions.index("Press"))

    @staticmethod
    def key(*keys):
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)

    @staticmethod
    def type(text):
        subprocess.run(["xdotool", "type", "--delay", "2", "--", text], check=True)

    @staticmethod
    def scroll(x, y, turn):
        """By some turns of the wheel, with the pointer there."""
        move_pointer(x, y)
        subprocess.run(["xdotool", "click", "--repeat", "3", str(turn)], check=True)

    @staticmethod
    def click(node, button=1):
        """With the pointer, in the middle of what is on the screen."""
        place = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
        move_pointer(place.x + place.width // 2, place.y + place.height // 2)
        subprocess.run(["xdotool", "click", str(button)], check=True)


def move_pointer(x, y):
    subprocess.run(["xdotool", "mousemove", str(x), str(y)], check=True)


class WindowTest(unittest.TestCase):
    """A window for each test, and what its user often does."""

    program = os.environ["VELARC"]
    tolerated = ""  # what it may say on standard error

    def setUp(self):
        self.window = Window(self.program)
        self.addCleanup(self.end)

    def end(self):
        status, said = self.window.close()
        self.assertEqual(status, 0, said)
        self.assertIn(said, ("", self.tolerated))

    def select(self, action):
        """In the sidebar, which has rows only for what is in view."""
        self.window.find("Actions", "list")
        turns = iter([DOWN] * 20 + [UP] * 40)
        while not self.window.named(action, "list item"):
            self.window.scroll(100, 600, next(turns))
        self.window.press(action, "list item")
        self.window.find(action, BUTTON)  # the card of the action

    def type_into_the_editor(self, text):
        self.window.wait_for_focus(EDITOR)
        self.window.type(text)
        wait_for("the typed text", lambda: self.window.text_of(EDITOR) == text)

    def start_run(self, text=TEXT):
        self.type_into_the_editor(text)
        self.window.key("ctrl+Return")

    def run_to_result(self, text=TEXT):
        self.start_run(text)
        self.window.find("Run Again", BUTTON)

    def press_and_paste_elsewhere(self, command):
        """Another program's paste after a command has copied."""
        copy(b"before")
        self.window.press(command, BUTTON)
        return wait_for("another clipboard", lambda: (
            text if (text := clipboard()) not in (b"", b"before") else None)).decode()
