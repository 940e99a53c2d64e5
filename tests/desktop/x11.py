"""A desktop of X11 without a screen or a window manager."""

import os
import subprocess

from session import *

need("Xvfb", "xdotool")


class XSession(Session):
    def __init__(self, folder):
        super().__init__(folder, QT_QPA_PLATFORM="xcb")

    def begin_display(self):
        reading, writing = os.pipe()
        # Without a reset, which would come when the bus's launcher, its first client,
        # leaves, and break the connections of those who come at that moment.
        self.start(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1400x900x24",
                    "-nolisten", "tcp", "-noreset"], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            self.environment["DISPLAY"] = ":" + number.readline().strip()

    def take_over(self, window):
        """What a window manager does for a new window; shortcuts need it."""
        self.xdotool("search", "--sync", "--onlyvisible", "--name", "^Brisalon$",
                     "windowfocus", "--sync")

    def press(self, key):
        self.xdotool("key", key)

    def click(self, item, times=1):
        x, y = self.place(item)
        self.xdotool("mousemove", str(x), str(y), "click", "--repeat", str(times), "1")

    def check_hover(self, hovered, other):
        """Nobody here tells colours."""

    def xdotool(self, *arguments):
        subprocess.run(["xdotool", *arguments], env=self.environment, check=True, timeout=8)
