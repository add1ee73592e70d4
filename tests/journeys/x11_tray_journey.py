"""The icon in a tray of the older kind (XEmbed), which comes after the program, goes and comes again."""
import os
import re
import signal
import time

from x11_hand import Hand


def icon(desktop):
    """The middle of the icon, once the tray has given it its place: in two looks that agree, within the tray."""
    last = None

    def at_rest():
        nonlocal last
        before, last = last, place_of_icon(desktop)
        panel = desktop.window("panel")
        if not last or not panel or before != last:
            return None
        left, top, width, height = panel.frame
        return last if left < last[0] < left + width and top <= last[1] <= top + height else None

    return desktop.wait_for(at_rest, "icon in the tray", 40)


def place_of_icon(desktop):
    tree = desktop.run("xwininfo", "-root", "-tree")
    place = re.search(r'"Quillo": \("quillo" "Quillo"\) +(\d\d)x(\d\d)\+\d+\+\d+ +\+(\d+)\+(\d+)', tree)
    if not place:
        return None
    width, height, x, y = map(int, place.groups())
    return x + width // 2, y + height // 2


def in_the_tray(journey):
    desktop = journey.desktop
    hand = Hand(desktop)
    quillo = os.path.join(os.path.dirname(journey.quilloctl), "quillo")
    notes = desktop.start("Notes", "xterm", "-T", "Notes")
    journey.quillo("save", "Morning")
    desktop.close_window(notes)
    program = desktop._spawn([quillo, "--background"])
    # Without a tray another start brings the window; by then it has looked for one, and waits.
    desktop.wait_for(lambda: "Qt Selection Owner for quillo" in desktop.run("xwininfo", "-root", "-tree"), "program")
    desktop.run(quillo)
    desktop.wait_for(lambda: desktop.window("Quillo"), "main window")
    desktop.run("wmctrl", "-c", "Quillo")
    desktop.settle()
    hand.keys("Right", "Return")  # past Cancel: it keeps running
    desktop.wait_for(lambda: not desktop.window("Quillo"), "end of the window")
    for again in (False, True):
        tray = desktop._spawn(["trayer", "--edge", "top", "--widthtype", "request", "--height", "24"])
        icon(desktop)
        assert not desktop.window("Quillo"), "it opened its window unasked"
        click_until_open(desktop, hand)
        open_and_close(desktop)
        if not again:
            os.killpg(tray.pid, signal.SIGTERM)
            desktop.wait_for(lambda: not place_of_icon(desktop), "end of the icon with its tray")

    # The menu: the workspace is the first of it; "Open Quillo", "Settings" and "Quit Quillo" the last.
    choose(desktop, hand, ["Down", "Return"], lambda: desktop.window("xterm"))
    desktop.wait_for(lambda: not desktop.window("Quillo restore"), "end of the panel", 60)
    choose(desktop, hand, ["Up", "Up", "Up", "Return"], lambda: desktop.window("Quillo"))
    # A window that is still becoming the active one would close the menu.
    desktop.wait_for(lambda: desktop.run("xdotool", "getwindowfocus", "getwindowname").strip() == "Quillo", "keyboard")
    desktop.settle()
    choose(desktop, hand, ["Up", "Return"], lambda: program.poll() is not None)
    assert program.returncode == 0, program.returncode


def click_until_open(desktop, hand):
    """An icon that its tray has only just taken in may miss a click, and is clicked again, as a person would."""
    for _ in range(3):
        hand.click_at(*icon(desktop))
        for _ in range(100):
            if desktop.window("Quillo"):
                return
            time.sleep(0.05)


def open_and_close(desktop):
    desktop.close_window(desktop.wait_for(lambda: desktop.window("Quillo"), "main window"))


def choose(desktop, hand, keys, outcome):
    shown = lambda: set(desktop.run("xdotool", "search", "--onlyvisible", "--class", "quillo").split())
    before = shown()
    hand.click_at(*icon(desktop), 3)
    desktop.wait_for(lambda: shown() - before, "menu")
    hand.keys(*keys)
    desktop.wait_for(outcome, "what the menu was asked for")
