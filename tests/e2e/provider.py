"""The providers' hosts on loopback, as a whole program meets them: by their names, over TLS."""

import json
import queue
import socket
import subprocess
import tempfile
import threading
from pathlib import Path

HOSTS = ["api.openai.com", "generativelanguage.googleapis.com", "api.anthropic.com"]


def require_no_other_network():
    """Fails unless loopback is the only interface: nothing sent from here can leave the machine."""
    lines = Path("/proc/self/net/dev").read_text().splitlines()[2:]
    interfaces = {line.split(":")[0].strip() for line in lines}
    if not interfaces <= {"lo"}:
        raise RuntimeError(f"there is a network: {sorted(interfaces)}")


def require_loopback_names():
    for host in HOSTS:
        addresses = {entry[4][0] for entry in socket.getaddrinfo(host, 443)}
        if addresses != {"127.0.0.1"}:
            raise RuntimeError(f"{host} is {addresses}")


class Provider:
    """A scripted server that has all hosts' names and that the system trusts.

    Only inside tests/session/run_off_the_network.sh: it mounts over /etc/hosts and /etc/ssl/certs.
    """

    def __init__(self, program):
        require_no_other_network()
        self._folder = tempfile.TemporaryDirectory()
        self.requests = []
        hosts = self._path("hosts")
        hosts.write_text(f"127.0.0.1 localhost {' '.join(HOSTS)}\n")
        self._mount(hosts, "/etc/hosts")
        require_loopback_names()
        self._start(program)
        self._trust()

    def _path(self, name):
        return Path(self._folder.name) / name

    @staticmethod
    def _mount(source, target):
        subprocess.run(["mount", "--bind", source, target], check=True)

    def _start(self, program):
        command = [program, "443", self._path("authority.pem"), *HOSTS]
        self._process = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._lines = queue.SimpleQueue()
        self._reader = threading.Thread(target=self._read_all)
        self._reader.start()
        if self._read() != {"listening": True}:
            raise RuntimeError("the server does not listen")

    def _trust(self):
        """The trust store is a folder of links that are named for the certificates' hashes."""
        folder = self._path("certs")
        folder.mkdir()
        authority = self._path("authority.pem")
        command = ["openssl", "x509", "-hash", "-noout", "-in", authority]
        name = subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()
        (folder / "authority.pem").write_bytes(authority.read_bytes())
        (folder / f"{name}.0").symlink_to("authority.pem")
        self._mount(folder, "/etc/ssl/certs")

    def _read_all(self):
        for line in self._process.stdout:
            self._lines.put(json.loads(line))

    def _read(self):
        return self._lines.get(timeout=20)

    def answer(self, **answer):
        """One more answer; see the program's own text for its fields."""
        self._process.stdin.write(json.dumps(answer) + "\n")
        self._process.stdin.flush()

    def next_request(self):
        """The next whole request, once it is there."""
        self.requests.append(self._read())
        return self.requests[-1]

    def stop(self):
        """Ends the server; gives the requests that nobody asked for."""
        if not self._process.stdin.closed:
            self._process.stdin.close()
            self._process.wait(timeout=10)
            self._reader.join()
            self._process.stdout.close()
        return [self._lines.get() for _ in range(self._lines.qsize())]

    def close(self):
        """Takes back what was mounted."""
        rest = self.stop()
        for target in ["/etc/ssl/certs", "/etc/hosts"]:
            subprocess.run(["umount", target], check=True)
        self._folder.cleanup()
        return rest
