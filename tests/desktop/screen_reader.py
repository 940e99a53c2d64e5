#!/usr/bin/python3
"""screen_reader.py PROGRAM

Uses the program as somebody does who cannot see it: through the accessibility bus
that screen readers use, with a keyboard. Starts the program on a display, a session
bus and with a home folder of its own, walks its tree of accessible items, presses
buttons and blocks through their actions, and follows the focus. Prints what is wrong
and exits with 1; with 77, and what is missing, where it cannot run.
"""

import os
import subprocess
import sys

from session import *

need("Xvfb", "dbus-monitor", "xdotool")

UNKNOWN_ROLES = {"unknown", "invalid", "filler", ""}


class XSession(Session):
    """With a display of X11, and a log of what the program tells of the focus."""

    def __init__(self, folder):
        super().__init__(folder, QT_QPA_PLATFORM="xcb")

    def begin(self):
        reading, writing = os.pipe()
        # Without a reset, which would come when the bus's launcher, its first client,
        # leaves, and break the connections of those who come at that moment.
        self.start(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1400x900x24",
                    "-nolisten", "tcp", "-noreset"], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            self.environment["DISPLAY"] = ":" + number.readline().strip()

        self.begin_buses()
        self.events = os.path.join(self.folder, "events")
        with open(self.events, "w") as log:
            self.start(["dbus-monitor", "--address", self.address,
                        "interface='org.a11y.atspi.Event.Object'"], stdout=log)
        # The program tells only what somebody has asked to hear.
        Item(self.bus, (REGISTRY, "/org/a11y/atspi/registry")).call(
            REGISTRY, "RegisterEvent", "object:state-changed:focused")
        self.begin_program(sys.argv[1])

    def take_keyboard(self):
        """What a window manager does for a new window; shortcuts need it."""
        self.xdotool("search", "--sync", "--onlyvisible", "--name", "^Brisalon$",
                     "windowfocus", "--sync")

    def press(self, key):
        self.xdotool("key", key)

    def xdotool(self, *arguments):
        subprocess.run(["xdotool", *arguments], env=self.environment, check=True, timeout=8)

    def told_focus(self, item):
        """Whether an event has said that the item got the focus."""
        with open(self.events) as log:
            text = log.read()
        start = f"path={item.key[1]};"
        for event in text.split("signal time="):
            if start in event and 'string "focused"' in event and "int32 1" in event:
                return True
        return False


def check_names(window, where):
    for item in window.below():
        if item.has(FOCUSABLE) or item.actions():
            check(item.name() != "", f"{where}: a {item.role()} at {item.key[1]} has no name")
            check(item.role() not in UNKNOWN_ROLES,
                  f"{where}: '{item.name()}' has the role '{item.role()}'")


def journey(session):
    window = wait_for(session.window, "the program's window is on the bus", 30)
    if not window:
        return
    session.take_keyboard()
    card = wait_for(lambda: window.find("Scan Home folder"), "the card is found")
    for name in ("Scan This Mac", "Choose folder…", "Close", "Minimise", "Zoom", "Menu"):
        item = window.find(name)
        check(item and "button" in item.role(), f"'{name}' is a button")
    check(window.find("Ready"), "the status can be read")
    check_names(window, "welcome")

    target = window.find("Home folder")
    check(target.description() == "Not available now", "a disabled button says so")
    target.act("Press")
    check(window.find("Ready"), "a disabled button cannot be pressed")

    card.act("Press")
    map_item = wait_for(lambda: window.find("Map of home"), "the card's press starts the scan")
    if not map_item:
        return
    check(map_item.role() == "list", f"the map is a list, not a {map_item.role()}")
    for name in ("Home folder", "This Mac", "Rescan"):
        item = window.find(name)
        check(item and "button" in item.role(), f"'{name}' is a button")
    check_names(window, "map")

    blocks = map_item.children()
    names = [block.name() for block in blocks]
    check(names == ["node_modules, Folder, 20 MB, node_modules, Review",
                    "disk.iso, File, 10 MB, Installer, Review",
                    "film.mov, File, 6.0 MB"], f"the blocks are {names}")
    check(all(block.role() == "list item" for block in blocks), "the blocks are list items")
    for i, block in enumerate(blocks):
        x, y, width, height = block.extents()
        at = map_item.call(COMPONENT, "GetAccessibleAtPoint", dbus.Int32(x + width // 2),
                           dbus.Int32(y + height // 2), dbus.UInt32(ON_SCREEN))
        check(str(at[1]) == block.key[1], f"block {i} is found where it is")

    blocks[1].act("SetFocus")
    wait_for(lambda: blocks[1].has(SELECTED) and blocks[1].has(FOCUSED), "a block gets the focus")
    check(window.find("Move to Trash"), "the Trash can be reached for what is selected")
    blocks[2].act("Press")
    wait_for(lambda: blocks[2].has(SELECTED), "a block's press selects it")
    check(not blocks[1].has(SELECTED), "one block is selected at a time")

    session.press("Home")
    wait_for(lambda: blocks[0].has(FOCUSED) and session.told_focus(blocks[0]),
             "the focus goes to the largest block, and an event says so")
    session.press("Down")
    moved = wait_for(lambda: next((b for b in blocks[1:] if b.has(FOCUSED)), None),
                     "the focus follows an arrow key")
    if moved:
        wait_for(lambda: session.told_focus(moved), "an event says where the focus went")

    blocks[0].act("Zoom in")
    inner = wait_for(lambda: window.find("Map of node_modules"), "a folder can be zoomed into")
    if inner:
        wait_for(lambda: [b.name() for b in inner.children()] == [
            "a.bin, File, 12 MB",
            "b.bin, File, 8.0 MB"], "its blocks can be read")
        check_names(window, "zoomed")
        session.press("End")
        wait_for(lambda: inner.children()[1].has(FOCUSED), "the new map has the keyboard")
    session.press("BackSpace")
    map_item = wait_for(lambda: window.find("Map of home"), "Backspace goes up again")
    if map_item:
        trash(session, window, map_item)
    rows(session, window)


def trash(session, window, map_item):
    session.press("End")
    block = map_item.children()[-1]
    wait_for(lambda: block.has(FOCUSED), "the last block gets the focus")
    session.press("Delete")
    cancel = wait_for(lambda: window.find("Cancel"), "Delete asks before it moves")
    if not cancel:
        return
    wait_for(lambda: cancel.has(FOCUSED), "the question's Cancel has the focus")
    check_names(window, "question")
    dialog = window.find("Move 1 item(s) to Trash?")
    check(dialog and dialog.role() == "dialog", "the question is a dialog of that name")
    session.press("Escape")
    wait_for(lambda: not window.find("Cancel"), "Escape withdraws the question")
    wait_for(lambda: block.has(FOCUSED), "the block has the focus again")
    check(os.path.exists(session.home + "/film.mov"), "nothing was moved")


def rows(session, window):
    files = window.find("Largest files")
    names = [row.name() for row in files.children()]
    check(names == ["a.bin, node_modules, 12 MB",
                    "disk.iso, home, 10 MB",
                    "b.bin, node_modules, 8.0 MB",
                    "film.mov, home, 6.0 MB"], f"the rows are {names}")
    found = files.children()
    check(all(row.role() == "list item" for row in found), "the rows are list items")

    def selected():
        return [i for i, row in enumerate(found) if row.has(SELECTED)]

    found[1].act("Press")
    wait_for(lambda: selected() == [1], "a row's press ticks it")
    files.act("SetFocus")
    session.press("shift+Down")
    wait_for(lambda: selected() == [1, 2] and found[2].has(FOCUSED), "Shift ticks a second row")
    wait_for(lambda: session.told_focus(found[2]), "an event says which row has the focus")


if __name__ == "__main__":
    run(XSession, journey)
