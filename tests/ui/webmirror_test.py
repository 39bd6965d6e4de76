#!/usr/bin/python3
"""The web mirror in a real browser: the real program, with its decoder box
and its sign on pseudo-terminals and the mirror on, serves the page to
headless Chromium or Firefox on a phone-sized screen; while captions play into the
decoder, the page's current caption must equal what the sign shows in its
reflector, read from the bytes the sign got. Then the program goes, and comes
back with a null device for its sign, as at a venue without one: the page
says it is reconnecting, reconnects by itself, and shows the next caption.
    tests/ui/webmirror_test.py build/zelvan21 [chromium|firefox] [SCREENSHOT.png]
Exits 77 (skipped) when the browser is missing. Chromium is driven over its
debugging pipe; Firefox over WebDriver BiDi, with Debian's python3-websocket.
"""

import base64
import json
import os
import select
import shutil
import socket
import subprocess
import sys
import tempfile
import time

from ptyline import Line

SKIPPED = 77


class Sign:
    """What the sign shows, from the frames it got: three rows of 32 cells."""

    def __init__(self):
        self.rows = [bytearray(b" " * 32) for _ in range(3)]

    def feed(self, data):
        for body in data.split(b"\x01")[1::2]:
            if len(body) < 3 or body[0] != 0x20:
                continue
            row, col, text = body[1], body[2] - 0x1F, body[3:]
            if row == 0x7F and body[2] == 0x46:  # roll-up
                self.rows = self.rows[1:] + [bytearray(b" " * 32)]
            elif row == 0x7F and body[2] == 0x45:  # reset
                self.rows = [bytearray(b" " * 32) for _ in range(3)]
            elif 0x20 <= row <= 0x22 and col == 1 and text[:1] == b"\x0f":
                self.rows[row - 0x20][:] = b" " * 32
            elif 0x20 <= row <= 0x22:
                for i, b in enumerate(text):
                    if 1 <= col + i <= 32:
                        self.rows[row - 0x20][col + i - 1] = b

    def reflector(self):
        """The lines a reader sees in the reflector, as the page shows them."""
        lines = [bytes(reversed(r)).decode("cp1252", "replace").replace("\x7f", "\u266a")
                 for r in self.rows]
        lines = [line.strip(" ") for line in lines]
        return "\n".join(line for line in lines if line)


class Chromium:
    """Headless Chromium over --remote-debugging-pipe: commands on fd 3,
    answers on fd 4, each a JSON text ended by a NUL byte."""

    def __init__(self, profile):
        to_chromium, commands = os.pipe()
        answers, from_chromium = os.pipe()

        def pipes():
            os.dup2(to_chromium, 3)
            os.dup2(from_chromium, 4)

        self.process = subprocess.Popen(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
             "--remote-debugging-pipe", "--user-data-dir=" + profile, "about:blank"],
            preexec_fn=pipes, pass_fds=(3, 4), stderr=subprocess.DEVNULL)
        os.close(to_chromium)
        os.close(from_chromium)
        self.commands, self.answers, self.pending, self.last = commands, answers, b"", 0
        pages = [t for t in self.call("Target.getTargets")["targetInfos"] if t["type"] == "page"]
        self.session = self.call("Target.attachToTarget", targetId=pages[0]["targetId"],
                                 flatten=True)["sessionId"]

    def call(self, method, session=None, **params):
        self.last += 1
        message = {"id": self.last, "method": method, "params": params}
        if session:
            message["sessionId"] = session
        os.write(self.commands, json.dumps(message).encode() + b"\0")
        while True:
            while b"\0" not in self.pending:
                assert select.select([self.answers], [], [], 20)[0], f"{method}: no answer"
                self.pending += os.read(self.answers, 1 << 16)
            raw, self.pending = self.pending.split(b"\0", 1)
            answer = json.loads(raw)
            if answer.get("id") == self.last:
                assert "error" not in answer, answer
                return answer["result"]

    def page(self, method, **params):
        return self.call(method, self.session, **params)

    def phone(self):
        self.page("Emulation.setDeviceMetricsOverride", width=360, height=740,
                  deviceScaleFactor=2, mobile=True)

    def open(self, url):
        self.page("Page.navigate", url=url)

    def evaluate(self, expression):
        result = self.page("Runtime.evaluate", returnByValue=True, expression=expression)
        return result["result"].get("value")

    def screenshot(self):
        return base64.b64decode(self.page("Page.captureScreenshot", format="png")["data"])

    def end(self):
        self.process.terminate()
        self.process.wait()


# Firefox stays on loopback: everything else goes to a proxy that isn't there.
FIREFOX_PREFS = {
    "network.proxy.type": 1,
    "network.proxy.http": "127.0.0.1",
    "network.proxy.http_port": 9,
    "network.proxy.ssl": "127.0.0.1",
    "network.proxy.ssl_port": 9,
    "app.update.disabledForTesting": True,
    "browser.shell.checkDefaultBrowser": False,
    "datareporting.policy.dataSubmissionEnabled": False,
    "toolkit.telemetry.reportingpolicy.firstRun": False,
}


class Firefox:
    """Headless Firefox over WebDriver BiDi, a WebSocket on a loopback port."""

    def __init__(self, profile):
        import websocket  # Debian's python3-websocket

        os.makedirs(profile)
        with open(os.path.join(profile, "user.js"), "w") as prefs:
            for name, value in FIREFOX_PREFS.items():
                prefs.write(f"user_pref({json.dumps(name)}, {json.dumps(value)});\n")
        port = free_port()
        self.process = subprocess.Popen(
            ["firefox-esr", "--headless", "--no-remote", "--profile", profile,
             f"--remote-debugging-port={port}", "about:blank"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        assert wait_for(lambda: listening(port), 30), "Firefox never listened"
        self.socket = websocket.create_connection(f"ws://127.0.0.1:{port}/session", timeout=20,
                                                  suppress_origin=True)
        self.last = 0
        self.call("session.new", capabilities={})
        self.context = self.call("browsingContext.getTree")["contexts"][0]["context"]

    def call(self, method, **params):
        self.last += 1
        self.socket.send(json.dumps({"id": self.last, "method": method, "params": params}))
        while True:
            answer = json.loads(self.socket.recv())
            if answer.get("id") == self.last:
                assert answer.get("type") == "success", answer
                return answer["result"]

    def phone(self):
        self.call("browsingContext.setViewport", context=self.context,
                  viewport={"width": 360, "height": 740}, devicePixelRatio=2)

    def open(self, url):
        self.call("browsingContext.navigate", context=self.context, url=url, wait="complete")

    def evaluate(self, expression):
        result = self.call("script.evaluate", target={"context": self.context},
                           awaitPromise=False, expression=expression)
        return result["result"].get("value")

    def screenshot(self):
        data = self.call("browsingContext.captureScreenshot", context=self.context)["data"]
        return base64.b64decode(data)

    def end(self):
        self.socket.close()
        self.process.terminate()
        self.process.wait()


def text(browser, element_id):
    return browser.evaluate(f"document.getElementById('{element_id}').textContent")


def choices(browser):
    """The reader's text size and colours as the page shows them."""
    return browser.evaluate("getComputedStyle(document.documentElement)"
                            ".getPropertyValue('--size').trim() + ' ' + document.body.className")


def press(browser, *buttons):
    for button in buttons:
        browser.evaluate(f"document.getElementById('{button}').click()")


BROWSERS = {"chromium": ("chromium", Chromium), "firefox": ("firefox-esr", Firefox)}


def listening(port):
    with socket.socket() as s:
        return s.connect_ex(("127.0.0.1", port)) == 0


def pop_on(lines):
    """A pop-on caption of line-21 text on rows 14 and 15, control pairs doubled."""
    pair = lambda code: bytes([0x14, code]) * 2
    caption = pair(0x20) + pair(0x2E)
    for pac, body in zip([0x50, 0x70][2 - len(lines):], lines):
        caption += pair(pac) + body + (b"\0" if len(body) % 2 else b"")
    return caption + pair(0x2F)


NOTE = b"\x11\x37"  # the music note; 0x5C is e acute in line-21 text
CAPTIONS = [
    [b"Good evening, everyone."],
    [NOTE + b" Sing along " + NOTE, b"at the Caf\x5c"],
    [b'She said "yes"', b"and left."],
    [b"The last one."],
]
BRIGHT = b"\x01\x20\x7f\x20\x01"


def frames(line, seconds=5):
    """What the sign gets up to the bright frame that ends a caption."""
    got, deadline = b"", time.monotonic() + seconds
    while not got.endswith(BRIGHT) and time.monotonic() < deadline:
        got += line.take()
    return got


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


def wait_for(done, seconds=10):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if done():
            return True
        time.sleep(0.05)
    return False


def main(binary, browser_name="chromium", screenshot=None):
    command, kind = BROWSERS[browser_name]
    if not shutil.which(command):
        print(f"skipped: no {command}")
        return SKIPPED
    box, sign_line = Line(), Line()
    folder = tempfile.mkdtemp(prefix="zelvan-mirror-")
    port = free_port()
    os.makedirs(os.path.join(folder, "Zelvan21"))
    env = dict(os.environ, XDG_CONFIG_HOME=folder, QT_QPA_PLATFORM="offscreen")

    def start(sign_device):
        with open(os.path.join(folder, "Zelvan21", "Zelvan21.ini"), "w") as ini:
            ini.write(f"[Devices]\nCOM1={box.slave}\nCOM2={sign_device}\n"
                      f"[WebMirror]\nEnabled=true\nPort={port}\n")
        return subprocess.Popen([binary, "--no-splash"], env=env, stderr=subprocess.DEVNULL)

    program, browser = start(sign_line.slave), None
    try:
        sign = Sign()
        assert wait_for(lambda: sign.feed(sign_line.take()) or sign.reflector()), "no startup caption"
        browser = kind(os.path.join(folder, "browser"))
        browser.phone()
        browser.open(f"http://127.0.0.1:{port}/")
        assert wait_for(lambda: text(browser, "status") == "Live"), text(browser, "status")
        time.sleep(1.0)  # the decoder port settles after opening
        for lines in [None] + CAPTIONS:
            if lines:
                os.write(box.master, pop_on(lines))
                sign.feed(frames(sign_line))
            want = sign.reflector()
            assert wait_for(lambda: text(browser, "current") == want, 5), \
                f"the page shows {text(browser, 'current')!r}, the sign {want!r}"
            print("ok:", want.replace("\n", " / "))
        assert "Good evening, everyone." in text(browser, "history"), text(browser, "history")
        if screenshot:
            with open(screenshot, "wb") as f:
                f.write(browser.screenshot())
        before = choices(browser)
        press(browser, "larger", "larger", "theme")
        chosen = choices(browser)
        assert chosen != before and int(chosen[:2]) == int(before[:2]) + 8, (before, chosen)
        browser.open(f"http://127.0.0.1:{port}/")
        assert wait_for(lambda: text(browser, "status") == "Live"), text(browser, "status")
        assert choices(browser) == chosen, f"after a reload {choices(browser)!r}, not {chosen!r}"
        program.terminate()
        program.wait()
        assert wait_for(lambda: text(browser, "status") == "Reconnecting\u2026"), text(browser, "status")
        program = start("null")
        assert wait_for(lambda: text(browser, "status") == "Live", 20), text(browser, "status")
        assert wait_for(lambda: text(browser, "current").startswith("Welcome"))
        time.sleep(1.0)
        os.write(box.master, pop_on([b"Without a sign."]))
        assert wait_for(lambda: text(browser, "current") == "Without a sign.", 5), \
            text(browser, "current")
    finally:
        if browser:
            browser.end()
        program.terminate()
        program.wait()
        shutil.rmtree(folder, ignore_errors=True)
    print("ok")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
