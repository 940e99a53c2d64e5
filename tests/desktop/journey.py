#!/usr/bin/python3
"""journey.py PROGRAM DISPLAY

Uses the program from outside, on a desktop of its own: as somebody does who cannot see it,
through the accessibility bus that screen readers use, and with keyboard and mouse. DISPLAY
is "x11", or a scale under Wayland. Prints what is wrong and exits with 1; with 77, and what
is missing, where it cannot run.
"""

from session import *

UNKNOWN_ROLES = {"unknown", "invalid", "filler", ""}


def check_names(window, where):
    for item in window.below():
        if item.has(FOCUSABLE) or item.actions():
            check(item.name() != "", f"{where}: a {item.role()} at {item.key[1]} has no name")
            check(item.role() not in UNKNOWN_ROLES,
                  f"{where}: '{item.name()}' has the role '{item.role()}'")


def check_buttons(window, *names):
    for name in names:
        item = window.find(name)
        check(item and "button" in item.role(), f"'{name}' is a button")


def items_of(view, *names):
    """Which are those of a list."""
    items = view.children()
    found = [item.name() for item in items]
    check(found == list(names), f"in '{view.name()}' are {found}")
    roles = {item.role() for item in items}
    check((view.role(), roles) == ("list", {"list item"}), f"it is a {view.role()} of {roles}")
    return items


def map_of(window, name):
    """Once the map before has faded away."""
    def alone():
        maps = [item for item in window.below() if item.name().startswith("Map of ")]
        return maps[0] if [item.name() for item in maps] == ["Map of " + name] else None
    return wait_for(alone, f"the map shows {name}")


def journey(session):
    window = wait_for(session.window, "the program's window is on the bus", 30)
    session.take_over(window)
    welcome(window)
    home = map_of(window, "home")
    check_buttons(window, "Home folder", "This Mac", "Rescan")
    check_names(window, "map")
    look_and_choose(session, window, home)
    zoom(session, window, home)
    rows(session, window)
    menu(session, window)
    trash(session, window)


def welcome(window):
    card = wait_for(lambda: window.find("Scan Home folder"), "the card is found")
    check_buttons(window, "Scan This Mac", "Choose folder…", "Close", "Minimise", "Zoom", "Menu")
    check(window.find("Ready"), "the status can be read")
    check_names(window, "welcome")
    target = window.find("Home folder")
    check(target.description() == "Not available now", "a disabled button says so")
    target.act("Press")
    check(window.find("Ready"), "a disabled button cannot be pressed")
    card.act("Press")


def look_and_choose(session, window, home):
    blocks = items_of(home, "node_modules, Folder, 20 MB, node_modules, Review",
                      "disk.iso, File, 10 MB, Installer, Review", "film.mov, File, 6.0 MB")
    for i, block in enumerate(blocks):
        x, y, width, height = block.extents()
        at = home.call(COMPONENT, "GetAccessibleAtPoint", dbus.Int32(x + width // 2),
                       dbus.Int32(y + height // 2), dbus.UInt32(ON_SCREEN))
        check(str(at[1]) == block.key[1], f"block {i} is found where it is")
    session.check_hover(blocks[0], blocks[1])

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
    wait_for(lambda: any(block.has(FOCUSED) and session.told_focus(block) for block in blocks[1:]),
             "the focus follows an arrow key, and an event says so")


def zoom(session, window, home):
    folder = home.children()[0]
    folder.act("Zoom in")
    inner = map_of(window, "node_modules")
    items = items_of(inner, "a.bin, File, 12 MB", "b.bin, File, 8.0 MB")
    check_names(window, "zoomed")
    session.press("End")
    wait_for(lambda: items[1].has(FOCUSED), "the new map has the keyboard")
    session.press("BackSpace")
    folder = map_of(window, "home").children()[0]
    session.click(folder, times=2)
    map_of(window, "node_modules")
    session.press("BackSpace")
    map_of(window, "home")


def rows(session, window):
    files = window.find("Largest files")
    found = items_of(files, "a.bin, node_modules, 12 MB", "disk.iso, home, 10 MB",
                     "b.bin, node_modules, 8.0 MB", "film.mov, home, 6.0 MB")
    found[1].act("Press")
    wait_for(lambda: [row.has(SELECTED) for row in found] == [False, True, False, False],
             "a row's press ticks it")
    files.act("SetFocus")
    session.press("Down")
    wait_for(lambda: found[2].has(FOCUSED) and session.told_focus(found[2]),
             "the focus goes to the next row, and an event says so")


def menu(session, window):
    session.click(window.find("Menu"))
    session.click(wait_for(lambda: window.find("About Brisalon"), "the menu opens"))
    wait_for(lambda: window.find("brisalon.app"), "an entry of the menu does its work")
    session.press("Escape")
    wait_for(lambda: not window.find("brisalon.app"), "Escape closes what it opened")


def trash(session, window):
    film = window.find("Map of home").children()[-1]
    session.click(film)
    wait_for(lambda: film.has(SELECTED), "a click selects")
    session.press("Delete")
    cancel = wait_for(lambda: window.find("Cancel"), "Delete asks before it moves")
    wait_for(lambda: cancel.has(FOCUSED), "the question's Cancel has the focus")
    check_names(window, "question")
    dialog = window.find("Move 1 item(s) to Trash?")
    check(dialog and dialog.role() == "dialog", "the question is a dialog of that name")
    session.press("Escape")
    wait_for(lambda: not window.find("Cancel"), "Escape withdraws the question")
    wait_for(lambda: film.has(FOCUSED), "the block has the focus again")
    check(os.path.exists(session.home + "/film.mov"), "nothing was moved")

    session.press("Delete")
    wait_for(lambda: window.find("Cancel"), "Delete asks again")
    session.click(next(item for item in reversed(window.below())
                       if item.name() == "Move to Trash"))
    wait_for(lambda: os.path.exists(session.folder + "/data/Trash/files/film.mov"),
             "the answer moves the file to the Trash")
    check(not os.path.exists(session.home + "/film.mov"), "the file is gone from the folder")
    wait_for(lambda: len(window.find("Map of home").children()) == 2, "and from the map")


if __name__ == "__main__":
    display = sys.argv[2]
    if display == "x11":
        from x11 import XSession
        run(XSession, journey)
    from wayland import WaylandSession
    run(lambda folder: WaylandSession(folder, float(display)), journey)
