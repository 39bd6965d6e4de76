"""The far end of a serial line for the tests that drive the real program."""

import os
import pty
import select


class Line:
    """The far end of a serial line: a pty master, non-blocking."""

    def __init__(self):
        self.master, slave = pty.openpty()
        self.slave = os.ttyname(slave)
        os.close(slave)
        os.set_blocking(self.master, False)

    def take(self, ms=50):
        got = b""
        while select.select([self.master], [], [], ms / 1000)[0]:
            try:
                chunk = os.read(self.master, 4096)
            except OSError:
                break
            if not chunk:
                break
            got += chunk
        return got

    def hang_up(self):
        os.close(self.master)
