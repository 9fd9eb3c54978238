"""Where a key might be that should be nowhere."""

import base64
import os
import subprocess
import tempfile
import time
import uuid
from pathlib import Path


def new_key():
    """A key that was never used before and means nothing to anybody."""
    return f"sk-canary-{uuid.uuid4()}"


def forms(key):
    """The bytes in which a careless program may write a text."""
    plain = key.encode()
    encoded = []
    for offset in range(3):  # wherever it begins in what is encoded
        code = base64.b64encode(b"\0" * offset + plain + b"\0\0\0")
        encoded.append(code[4:len(plain) * 4 // 3 - 4])
    return [plain, key.encode("utf-16-le"), plain.hex().encode(), plain.hex().upper().encode(),
            *encoded]


def holds(data, key):
    return any(form in data for form in forms(key))


def files_that_hold(key, folder):
    """The files below a folder, and how many were read."""
    found, count = [], 0
    for path in Path(folder).rglob("*"):
        if path.is_file() and not path.is_symlink():
            count += 1
            if holds(path.read_bytes(), key):
                found.append(path)
    return found, count


class BusCapture:
    """Every message on the session bus, as it goes over the wire."""

    def __init__(self):
        self._file = tempfile.NamedTemporaryFile()
        self._monitor = subprocess.Popen(["dbus-monitor", "--session", "--pcap"],
                                         stdout=self._file, stderr=subprocess.DEVNULL)
        self._wait_for_mark()

    def _wait_for_mark(self):
        """Asks the bus for a new name until the capture has it, and so all that came before."""
        mark = f"velarc.mark{uuid.uuid4().hex}"
        bound = time.monotonic() + 10
        while mark.encode() not in Path(self._file.name).read_bytes():
            if time.monotonic() > bound:
                raise RuntimeError("the bus is not captured")
            subprocess.run(
                ["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                 "/", "--method", "org.freedesktop.DBus.NameHasOwner", mark],
                check=True, stdout=subprocess.DEVNULL)

    def messages(self):
        """The bytes of all messages up to now."""
        self._wait_for_mark()
        return Path(self._file.name).read_bytes()

    def close(self):
        self._monitor.terminate()
        self._monitor.wait()
        self._file.close()


def process_files(pid):
    """What the kernel tells of a process: its arguments, its environment, and its open files."""
    folder = Path("/proc") / str(pid)
    texts = {name: (folder / name).read_bytes() for name in ["cmdline", "environ", "comm"]}
    for descriptor in (folder / "fd").iterdir():
        texts[f"fd/{descriptor.name}"] = os.readlink(descriptor).encode()
    return texts
