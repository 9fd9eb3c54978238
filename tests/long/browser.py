"""A browser without a window, driven over a pair of pipes: no port is opened, nothing is fetched."""

import base64
import json
import os
import shutil
import subprocess
import tempfile

PROGRAMS = ("chromium", "chromium-browser", "google-chrome")

PAGE = """<!doctype html>
<html>
<head>
  <style>
    html, body { margin: 0; padding: 0; width: 100%; height: 100%; background: #ffffff; }
    .wrap {
      width: 100%; height: 100%; display: flex; align-items: center; justify-content: center;
    }
    img { width: 100%; height: 100%; object-fit: contain; }
  </style>
</head>
<body><div class="wrap"><img src="data:image/svg+xml;base64,@"></div></body>
</html>"""


def program():
    """The browser's path, or None where none is installed."""
    return next((path for path in map(shutil.which, PROGRAMS) if path), None)


class Browser:
    """Shows pages of `side` by `side` pixels."""

    def __init__(self, side):
        self._side = side
        self._profile = tempfile.TemporaryDirectory()
        to_browser, self._out = os.pipe()
        self._in, from_browser = os.pipe()
        self._process = subprocess.Popen(
            self._command(to_browser, from_browser),
            pass_fds=(to_browser, from_browser),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        os.close(to_browser)
        os.close(from_browser)
        self._buffer = b""
        self._number = 0
        self._session = None
        target = self._ask("Target.createTarget", url="about:blank")["targetId"]
        self._session = self._ask("Target.attachToTarget", targetId=target, flatten=True)[
            "sessionId"
        ]
        self._ask("Page.enable")
        self._ask(
            "Emulation.setDeviceMetricsOverride",
            width=side,
            height=side,
            deviceScaleFactor=1,
            mobile=False,
        )

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self._out)  # the browser ends with its pipe
        try:
            self._process.wait(10)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        os.close(self._in)
        self._profile.cleanup()

    def _command(self, to_browser, from_browser):
        # The pipes are wanted as descriptors 3 and 4, which a shell arranges.
        options = [
            "--headless=new",
            "--remote-debugging-pipe",
            f"--user-data-dir={self._profile.name}",
            "--no-first-run",
            "--disable-gpu",
            "--disable-background-networking",
            "--disable-extensions",
            "--hide-scrollbars",
            "--force-color-profile=srgb",
            "--host-resolver-rules=MAP * ~NOTFOUND",
        ]
        if os.geteuid() == 0:
            options.append("--no-sandbox")
        shell = f'exec "$@" 3<&{to_browser} 4>&{from_browser}'
        return ["bash", "-c", shell, "browser", program(), *options]

    def _receive(self):
        while b"\0" not in self._buffer:
            piece = os.read(self._in, 1 << 20)
            if not piece:
                raise RuntimeError("the browser ended")
            self._buffer += piece
        message, self._buffer = self._buffer.split(b"\0", 1)
        return json.loads(message)

    def _ask(self, method, until=None, **parameters):
        """Calls a method; its result, once the event `until` has come as well."""
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        self._send(json.dumps(message).encode() + b"\0")
        result = None
        while result is None or until:
            got = self._receive()
            if got.get("id") == self._number:
                if "error" in got:
                    raise RuntimeError(f"{method}: {got['error']['message']}")
                result = got["result"]
            elif got.get("method") == until:
                until = None
        return result

    def _send(self, message):
        while message:
            message = message[os.write(self._out, message) :]

    def picture_of(self, svg):
        """The PNG of a page that shows the drawing as large as it fits."""
        page = PAGE.replace("@", base64.b64encode(svg).decode())
        address = "data:text/html;base64," + base64.b64encode(page.encode()).decode()
        self._ask("Page.navigate", until="Page.loadEventFired", url=address)
        clip = {"x": 0, "y": 0, "width": self._side, "height": self._side, "scale": 1}
        shot = self._ask("Page.captureScreenshot", format="png", clip=clip)
        return base64.b64decode(shot["data"])
