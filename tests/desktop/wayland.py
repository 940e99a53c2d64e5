"""A desktop of Wayland without a display, with a mouse and a keyboard of the test's own."""

import itertools
import json
import os
import socket
import stat
import struct
import subprocess
import tempfile
import time

from session import *

need("sway", "swaymsg", "grim")

# In points; of the display, and of the window at first and at least.
DISPLAY = (1400, 900)
SIZE = [1280, 820]
SMALLEST = [960, 700]

# Who may do nothing; for the compositor, which refuses to be root.
NOBODY = 65534


# The keys that are pressed here, by their numbers in the kernel.
KEYS = {"Escape": 1, "BackSpace": 14, "Home": 102, "End": 107, "Down": 108, "Delete": 111}
# Those of X are larger by eight.
KEYMAP = """xkb_keymap {{
    xkb_keycodes {{ minimum = 8; maximum = 255; {} }};
    xkb_types {{ include "basic" }};
    xkb_compatibility {{ include "basic" }};
    xkb_symbols {{ {} }};
}};""".format(" ".join(f"<K{code}> = {code + 8};" for code in KEYS.values()),
              " ".join(f"key <K{code}> {{ [ {name} ] }};" for name, code in KEYS.items()))


class Hands:
    """A mouse and a keyboard, by the compositor's protocols for virtual ones: a request is
    an object, an operation's number, and words of 32 bits. Every method returns when the
    compositor has done what it was asked."""

    CONNECTION = 1
    LEFT_BUTTON = 0x110

    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(8)
        self.socket.connect(path)
        # New objects have to come in this order.
        self.ids = itertools.count(2)

        self.registry = next(self.ids)
        self.request(self.CONNECTION, 1, self.registry)
        self.offers = self.finish()
        seat = self.bind("wl_seat")
        self.mouse = self.make(self.bind("zwlr_virtual_pointer_manager_v1"), seat)
        self.keyboard = self.make(self.bind("zwp_virtual_keyboard_manager_v1"), seat)
        with tempfile.TemporaryFile() as keymap:
            keymap.write(KEYMAP.encode() + b"\0")
            keymap.flush()
            self.request(self.keyboard, 0, 1, keymap.tell(), files=[keymap.fileno()])
            self.finish()

    def bind(self, interface):
        name = interface.encode() + b"\0"
        offer = next(body for body in self.offers if name in body)
        bound = next(self.ids)
        self.request(self.registry, 0, offer[:4], len(name), name + bytes(-len(name) % 4), 1,
                     bound)
        return bound

    def make(self, manager, seat):
        made = next(self.ids)
        self.request(manager, 0, seat, made)
        return made

    def request(self, target, operation, *words, files=()):
        body = b"".join(word if isinstance(word, bytes) else struct.pack("<I", word)
                        for word in words)
        header = struct.pack("<II", target, 8 + len(body) << 16 | operation)
        socket.send_fds(self.socket, [header + body], files)

    def finish(self):
        """The bodies of the events that came until everything asked was done."""
        answer = next(self.ids)
        self.request(self.CONNECTION, 0, answer)
        bodies = []
        while True:
            sender, size = struct.unpack("<II", self.socket.recv(8, socket.MSG_WAITALL))
            body = self.socket.recv((size >> 16) - 8, socket.MSG_WAITALL)
            if sender == answer:
                return bodies
            bodies.append(body)

    def act(self, device, operation, *words):
        now = int(time.monotonic() * 1000) & 0xFFFFFFFF
        self.request(device, operation, now, *words)
        if device == self.mouse:
            self.request(device, 4)
        self.finish()

    def press(self, key):
        for is_down in (1, 0):
            self.act(self.keyboard, 1, KEYS[key], is_down)

    def move(self, x, y):
        self.act(self.mouse, 1, x, y, *DISPLAY)

    def button(self, is_down):
        self.act(self.mouse, 2, self.LEFT_BUTTON, is_down)

    def click(self, x, y, times=1):
        self.move(x, y)
        for _ in range(times):
            self.button(True)
            self.button(False)

    def drag(self, x, y, dx, dy, seen):
        """From a point so far, as a hand does it: only on when the program and the compositor
        agree on what the drag does. seen() returns when the program has seen all so far."""
        self.move(x, y)
        seen()
        self.button(True)
        for step in (0, 0.2, 0.5, 1, 1):
            time.sleep(PAUSE)
            seen()
            self.move(x + round(dx * step), y + round(dy * step))
        self.button(False)


class WaylandSession(Session):
    """With a compositor that draws into memory, a mouse and a keyboard."""

    def __init__(self, folder, scale):
        self.display = folder + "/display"
        super().__init__(folder, QT_QPA_PLATFORM="wayland", SWAYSOCK=self.display + "/sway",
                         WLR_BACKENDS="headless", WLR_LIBINPUT_NO_DEVICES="1",
                         WLR_RENDERER="pixman")
        os.mkdir(self.display)
        with open(self.display + "/config", "w") as config:
            config.write("xwayland disable\n"
                         "focus_follows_mouse no\n"
                         "output * resolution {}x{} scale {}\n"
                         'for_window [app_id="brisalon"] floating enable, border none\n'
                         .format(*(round(side * scale) for side in DISPLAY), scale))

    def begin_display(self):
        drop = []
        if os.geteuid() == 0:
            os.chmod(self.folder, 0o711)
            os.chown(self.display, NOBODY, NOBODY)
            drop = [f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
        self.start(drop + ["env", "XDG_RUNTIME_DIR=" + self.display,
                           "sway", "--config", self.display + "/config"])
        # Beside the socket lies its lock.
        path = wait_for(lambda: next((entry.path for entry in os.scandir(self.display)
                                        if entry.name.startswith("wayland-") and
                                        stat.S_ISSOCK(entry.stat().st_mode)), None),
                          "the compositor starts")
        self.environment["WAYLAND_DISPLAY"] = path
        self.hands = Hands(path)

    def output(self, *command):
        return subprocess.run(command, env=self.environment, check=True, timeout=8,
                              stdout=subprocess.PIPE).stdout

    def frame(self):
        """The window's x, y, width and height, once there is one."""
        pending = [json.loads(self.output("swaymsg", "-t", "get_tree"))]
        while pending:
            node = pending.pop()
            if node.get("app_id") == "brisalon":
                return [node["rect"][key] for key in ("x", "y", "width", "height")]
            pending += node["nodes"] + node["floating_nodes"]
        return None

    def place(self, item):
        """What is the screen to the program is its window, as no Wayland program knows where
        that is."""
        x, y = super().place(item)
        left, top = self.frame()[:2]
        return left + x, top + y

    def press(self, key):
        self.hands.press(key)

    def click(self, item, times=1):
        self.hands.click(*self.place(item), times)

    def check_hover(self, hovered, other):
        corner = [n + 3 for n in self.frame()[:2]]
        self.hands.move(*corner)
        place = self.place(other)
        resting = self.colour(*place)
        self.hands.move(*self.place(hovered))
        wait_for(lambda: self.colour(*place) != resting, "a hover dims the other blocks")
        self.hands.move(*corner)
        wait_for(lambda: self.colour(*place) == resting, "and its end brightens them")

    def colour(self, x, y):
        picture = self.output("grim", "-t", "ppm", "-g", f"{x},{y} 1x1", "-")
        return picture[-3:]

    def frame_becomes(self, frame, what):
        """But for the point by which the compositor rounds."""
        found = []

        def is_there():
            found[:] = self.frame()
            return all(abs(a - b) <= 1 for a, b in zip(found, frame))

        if not wait_for(is_there, what):
            print(f"  {found} is not {frame}")

    def take_over(self, window):
        """What the compositor does for a window: places and sizes."""
        x, y, width, height = wait_for(self.frame, "the compositor has it")
        # Which has a place for the window before it shows it; a press there is on nothing.
        wait_for(lambda: self.colour(x + 9, y + 9) != self.colour(x - 9, y - 9),
                 "the compositor shows it")
        check([width, height] == SIZE, f"the window starts at {width}x{height}")

        def drag(*stretch):
            # What the window is asked, it answers after what it was to draw.
            self.hands.drag(*stretch, seen=window.extents)

        # The compositor takes over with what makes the press a drag: a fifth.
        drag(x + 150, y + 15, -30, 20)
        x, y = x - 24, y + 16
        self.frame_becomes([x, y, width, height], "the band moves the window")
        drag(x + width - 2, y + 400, -60, 0)
        width -= 60
        self.frame_becomes([x, y, width, height], "the right edge resizes it")
        drag(x + 2, y + 2, 40, 30)
        x, y, width, height = x + 40, y + 30, width - 40, height - 30
        self.frame_becomes([x, y, width, height], "a corner resizes it")
        drag(x + width - 2, y + height - 2, -700, -500)
        self.frame_becomes([x, y, *SMALLEST], "it stays as large as it must")
