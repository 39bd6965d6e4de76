#!/usr/bin/python3
"""The real program driven as a screen reader drives it, over the accessibility
bus: every window reads as a frame; "Reverse Text" toggled over the bus changes
what Send@ sends (two reversed lines end in column 32, a long plain row goes
out whole); and after the sign's adapter is pulled and plugged back in,
"Open" pressed over the bus brings the captions back to the sign.

It runs in a session bus and an X server of its own, with a runtime folder of
its own, where the bus keeps its socket:
    tests/ui/screenreader_test.py build/zelvan21
Exits 77 (skipped) when the bus or its Python bindings are missing.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time
import warnings

SKIPPED = 77
try:
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi
except (ImportError, ValueError) as missing:
    print("skipped:", missing)
    sys.exit(SKIPPED)
from ptyline import Line  # noqa: E402  (beside this file)


def wait_for(done, seconds=10):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        result = done()
        if result:
            return result
        time.sleep(0.1)
    return None


def find(node, role, name=None, depth=12, where=lambda node: True):
    """The first descendant with the role (and the name, when given)."""
    if node is None or depth < 0:
        return None
    try:
        if node.get_role_name() == role and name in (None, node.get_name()) and where(node):
            return node
        children = [node.get_child_at_index(i) for i in range(node.get_child_count())]
    except gi.repository.GLib.Error:
        return None
    for child in children:
        hit = find(child, role, name, depth - 1, where)
        if hit:
            return hit
    return None


def act(node, action):
    # The bindings know the action's name only by its deprecated call.
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", DeprecationWarning)
        names = [node.get_action_name(i) for i in range(node.get_n_actions())]
    assert action in names, f"{node.get_name()!r} offers {names}"
    node.do_action(names.index(action))


def checked(node):
    node.clear_cache()
    return node.get_state_set().contains(Atspi.StateType.CHECKED)


def pop_on(text):
    """A pop-on caption on row 15, each control pair doubled, as broadcast."""
    pair = lambda code: bytes([0x14, code]) * 2
    body = text.encode("cp1252") + (b"\0" if len(text) % 2 else b"")
    return pair(0x20) + pair(0x2E) + pair(0x70) + body + pair(0x2F)


class Screen:
    """A virtual X server on a display number it picks itself, free of races."""

    def __init__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-nolisten", "tcp",
                                        "-screen", "0", "1280x1024x24"],
                                       pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            self.display = ":" + number.readline().strip()

    def end(self):
        self.server.terminate()
        self.server.wait()


class Program:
    def __init__(self, binary):
        self.box, self.sign = Line(), Line()
        self.config = tempfile.mkdtemp(prefix="zelvan-bus-")
        # The sign's stable name, as udev gives a USB adapter.
        self.alias = os.path.join(self.config, "ttySign")
        os.symlink(self.sign.slave, self.alias)
        os.makedirs(os.path.join(self.config, "Zelvan21"))
        with open(os.path.join(self.config, "Zelvan21", "Zelvan21.ini"), "w") as ini:
            ini.write(f"[Devices]\nCOM1={self.box.slave}\nCOM2={self.alias}\n")
        # The bus and its registry up first: the program asks for the bus
        # once, as it starts, and goes without it if the answer is late.
        Atspi.get_desktop(0).get_child_count()
        env = dict(os.environ, XDG_CONFIG_HOME=self.config, QT_QPA_PLATFORM="xcb",
                   QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        self.process = subprocess.Popen([binary, "--no-splash"], env=env,
                                        stderr=subprocess.DEVNULL)
        self.seen = []
        self.app = wait_for(self.find_app, 40)
        assert self.app, f"the program never came onto the accessibility bus: {self.seen}"

    def find_app(self):
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            app = desktop.get_child_at_index(i)
            self.seen.append((app.get_name(), app.get_process_id()) if app else None)
            if app and app.get_process_id() == self.process.pid:
                return app
        return None

    def window(self, title):
        self.app.clear_cache()
        return wait_for(lambda: find(self.app, "frame", title, depth=1))

    def signs_after(self, press, want, seconds=5):
        """Presses, then reads the sign until `want` arrives."""
        self.sign.take()
        press()
        got = b""
        deadline = time.monotonic() + seconds
        while want not in got and time.monotonic() < deadline:
            got += self.sign.take()
        return want in got

    def end(self):
        self.process.kill()
        self.process.wait()


def in_a_session_of_its_own(binary, script=__file__):
    """Runs the check again inside a bus session bound to a new X server."""
    screen = Screen()
    runtime = tempfile.mkdtemp(prefix="zelvan-run-")
    env = dict(os.environ, DISPLAY=screen.display, XDG_RUNTIME_DIR=runtime, ZELVAN_IN_SESSION="1")
    env.pop("WAYLAND_DISPLAY", None)
    try:
        return subprocess.call(["dbus-run-session", "--", sys.executable, script, binary],
                               env=env)
    finally:
        screen.end()
        shutil.rmtree(runtime, ignore_errors=True)


def main(binary):
    if os.environ.get("ZELVAN_IN_SESSION") != "1":
        return in_a_session_of_its_own(binary)
    program = Program(binary)
    try:
        display = program.window("Halvane Display")
        assert display, "no frame 'Halvane Display'"
        assert program.window("Line-21 Decoder"), "the decoder window isn't a frame"
        # The startup caption has gone out: the display is up and listening.
        assert wait_for(lambda: program.sign.take()), "nothing reached the sign"

        reverse = find(display, "check box", "Reverse Text")
        send_at = find(display, "push button", "Send@")
        # The pending box starts with its column ruler.
        pending = find(display, "text", where=lambda n: n.get_text(0, 10) == "1234567890")
        assert reverse and send_at and pending, "the display window's controls are missing"
        pending.set_text_contents("XY")
        assert checked(reverse)
        assert program.signs_after(lambda: act(send_at, "Press"), b"YX"), "reversed Send@"
        # A reversed text of two lines ends in column 32 with its line break counted.
        pending.set_text_contents("AB\nCD")
        assert program.signs_after(lambda: act(send_at, "Press"), b"\x01 \x22\x3aDC\n\rBA\x01"), \
            "two reversed lines at the wrong column"
        pending.set_text_contents("XY")
        act(reverse, "Toggle")
        assert not checked(reverse), "the box didn't take the toggle"
        assert program.signs_after(lambda: act(send_at, "Press"), b"XY"), \
            "Send@ still reverses after the toggle"
        pending.set_text_contents("w" * 40)
        assert program.signs_after(lambda: act(send_at, "Press"), b"\x01 \x22 " + b"w" * 40 + b"\x01"), \
            "a plain row longer than the sign was cut"

        # The adapter is pulled out, then plugged back in under the same name.
        program.sign.hang_up()
        os.remove(program.alias)
        opener = wait_for(lambda: (display.clear_cache(), find(display, "push button", "Open"))[1])
        assert opener, "the port never showed as closed"
        program.sign = Line()
        os.symlink(program.sign.slave, program.alias)
        act(opener, "Press")
        assert wait_for(lambda: (display.clear_cache(), find(display, "push button", "Close"))[1])
        caption = lambda: os.write(program.box.master, pop_on("AGAIN"))
        assert program.signs_after(caption, b"AGAIN"), "no caption after the replug"
    finally:
        program.end()
    print("ok")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
