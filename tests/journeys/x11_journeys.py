#!/usr/bin/env python3
"""Whole journeys on real X servers: save, disturb, restore with quilloctl, and look at every window.

Usage: x11_journeys.py QUILLOCTL [--wm openbox,xfwm4,metacity] [--server xvfb,dummy] [--journey NAME] [--jobs N]
"""
import argparse
from concurrent.futures import ThreadPoolExecutor
import json
import os
import subprocess
import sys
import time

from x11_application_journeys import clean_slate, documents_come_back, terminals_come_back
import x11_browser_journey as browsers
from x11_desktop import Desktop
from x11_desktop_journeys import PLACES, desktops_come_back, floating_and_tiled
from x11_interface_journey import application
from x11_mouse_journey import by_mouse
from x11_tray_journey import in_the_tray

TOLERANCE = 2  # points
TITLES = ("Alpha", "Beta", "Gamma", "letter.txt", "thunar-folder", "Question")


class Journey:
    def __init__(self, quilloctl, window_manager, dummy, titles=TITLES):
        self.quilloctl, self.desktop, self.dummy = quilloctl, Desktop(window_manager, dummy), dummy
        self.titles = titles

    # -- the program under test -----------------------------------------------------------------------------
    def quillo(self, *arguments, expect=(0,)):
        done = subprocess.run([self.quilloctl, *arguments], env=self.desktop.environment, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=120)
        assert done.returncode in expect, (
            f"quilloctl {' '.join(arguments)} answered {done.returncode}, not {expect}:\n"
            f"{done.stdout.decode()}{done.stderr.decode()}")
        return done.stdout.decode()

    def restore(self, workspace="Morning", *options):
        lines = self.quillo("--json", "restore", workspace, *options, expect=(0, 3)).splitlines()
        return [json.loads(line) for line in lines]

    # -- the desktop ----------------------------------------------------------------------------------------
    def populate(self):
        home = self.desktop.home
        os.mkdir(home + "/thunar-folder")
        with open(home + "/letter.txt", "w") as file:
            file.write("Dear reader\n")
        start, move = self.desktop.start, self.desktop.move
        right = 1280 if self.dummy else 1300
        move(start("Alpha", "xterm", "-T", "Alpha"), 30, 40, 500, 320)
        move(start("Beta", "xterm", "-T", "Beta"), 560, 60, 484, 316)
        move(start("Gamma", "xterm", "-T", "Gamma"), right + 60, 80, 484, 316)
        move(start("letter.txt", "mousepad", home + "/letter.txt"), 80, 420, 620, 440)
        move(start("thunar-folder", "thunar", home + "/thunar-folder"), right + 100, 440, 700, 460)
        move(start("Question", "zenity", "--question", "--title=Question", "--text=Stay?"), 760, 480, 400, 200)
        self.desktop.settle()

    def seen(self):
        return {title: window for title in self.titles if (window := self.desktop.window(title))}

    def scatter(self):
        """Moves, resizes, maximizes, minimizes, makes full screen, sends away and closes."""
        desktop, windows = self.desktop, self.seen()
        desktop.move(windows["Alpha"], 700, 500, 700, 200)
        desktop.state(windows["Beta"], "add", "maximized_vert,maximized_horz")
        desktop.minimize(windows["thunar-folder"])
        desktop.state(windows["Gamma"], "add", "fullscreen")
        desktop.move(windows["Question"], 1500, 100, 400, 200)
        desktop.close_window(windows["letter.txt"])
        desktop.wait_for(lambda: desktop.window("thunar-folder").minimized and desktop.window("Gamma").full_screen
                         and desktop.window("Beta").maximized, "scattered windows")
        desktop.settle()

    def check_back(self, before, items):
        """Every saved window is in its place within two points, or its report line says why not."""
        self.desktop.settle()
        after, trouble = self.seen(), []
        for title, saved in before.items():
            item = next((item for item in items if title in (item.get("title") or "")), None)
            status = item and item["status"]
            if status not in ("restored", "adjusted"):
                trouble.append(f"{title}: reported {item}")
                continue
            now = after.get(title)
            if now is None:
                trouble.append(f"{title}: reported {status}, but it is not there")
                continue
            compared = 4 if status == "restored" else 2  # an adjusted window kept its place, not its size
            if any(abs(a - b) > TOLERANCE for a, b in zip(now.frame[:compared], saved.frame)):
                trouble.append(f"{title}: {status}, saved {saved}, now {now}")
            if now.desktop != saved.desktop:
                trouble.append(f"{title}: {status}, saved on desktop {saved.desktop}, now on {now.desktop}")
            for mark in ("minimized", "full_screen", "maximized"):
                if getattr(now, mark) != (mark != "maximized" and getattr(saved, mark)):
                    trouble.append(f"{title}: {mark} is {getattr(now, mark)}")
        assert not trouble, "\n".join(trouble)

    # -- the journeys ---------------------------------------------------------------------------------------
    def there_and_back(self):
        self.populate()
        before = self.seen()
        assert len(before) == len(TITLES), f"only {before}"
        self.quillo("save", "Morning")
        self.scatter()
        items = self.restore()
        self.check_back(before, items)
        assert any(item["status"] == "launched" for item in items), items
        self.restore_again(before)
        return before

    def restore_again(self, before):
        """A second restore changes nothing."""
        first = {title: window.frame for title, window in self.seen().items()}
        items = self.restore()
        self.check_back(before, items)
        assert not any(item["status"] == "launched" for item in items), items
        again = {title: window.frame for title, window in self.seen().items()}
        moved = {t: (first[t], again.get(t)) for t in first
                 if again.get(t) is None or max(abs(a - b) for a, b in zip(first[t], again[t])) > TOLERANCE}
        assert not moved, f"a second restore moved {moved}"

    def states_come_back(self):
        """Minimized and full-screen windows are saved as such and come back so."""
        desktop, windows = self.desktop, self.seen()
        desktop.minimize(windows["Alpha"])
        desktop.state(windows["thunar-folder"], "add", "fullscreen")
        desktop.wait_for(lambda: desktop.window("thunar-folder").full_screen and desktop.window("Alpha").minimized,
                         "full-screen and minimized window")
        desktop.settle()
        before = self.seen()
        self.quillo("save", "--update", "Morning")
        desktop.state(windows["thunar-folder"], "remove", "fullscreen")
        self.desktop.run("xdotool", "windowmap", str(windows["Alpha"].number))
        desktop.wait_for(lambda: not desktop.window("thunar-folder").full_screen
                         and not desktop.window("Alpha").minimized, "plain windows")
        desktop.settle()
        self.check_back({t: w for t, w in before.items() if t != "Alpha"}, self.restore())
        assert desktop.window("Alpha").minimized

    def monitors(self, before_save):
        """One monitor unplugged, one resized, and two identical ones swapped."""
        arrangements = {
            "unplugged": ({"DUMMY0": (0, 0)}, None),
            "resized": ({"DUMMY0": (0, 0), "DUMMY1": (1280, 0)}, {"DUMMY1": "1024x768"}),
            "swapped": ({"DUMMY1": (0, 0), "DUMMY0": (1280, 0)}, None),
            "back again": ({"DUMMY0": (0, 0), "DUMMY1": (1280, 0)}, None),
        }
        for name, (positions, modes) in arrangements.items():
            self.desktop.arrange(positions, modes)
            items = self.restore()
            self.desktop.settle()
            self.check_reachable(name, positions, modes)
            statuses = {item["title"]: item["status"] for item in items if item.get("title")}
            assert all(status in ("restored", "adjusted") for status in statuses.values()), (name, items)
            if name != "back again":
                assert "adjusted" in statuses.values(), (name, items)
        self.check_back(before_save, items)

    def check_reachable(self, name, positions, modes):
        for window in self.seen().values():
            x, y, width, height = window.frame
            for output, (left, top) in positions.items():
                right, bottom = (int(part) for part in (modes or {}).get(output, "1280x1024").split("x"))
                if left <= x and top <= y and x + width <= left + right and y + height <= top + bottom:
                    break
            else:
                raise AssertionError(f"{name}: {window} lies on no monitor")


def windows_come_back(journey):
    before = journey.there_and_back()
    if journey.dummy:
        journey.monitors(before)
    journey.states_come_back()


JOURNEYS = {
    "windows": (windows_come_back, TITLES),
    "documents": (documents_come_back, ("letter.txt", "list.txt", "Garden", "House")),
    "terminals": (terminals_come_back, ("Garden", "House")),
    "desktops": (desktops_come_back, tuple(PLACES)),
    "clean slate": (clean_slate, ("Garden",)),
    "application": (application, ("letter.txt", "Notes", "Morning")),
    "mouse": (by_mouse, ("Notes", "Secret", "Sluggish", "Morning", "Evening", "Afterwards")),
    "browsers": (browsers.tabs_come_back, (browsers.PRIVATE, browsers.PUBLIC)),
    "tray": (in_the_tray, ("Notes", "Morning")),
    "tiled": (floating_and_tiled, ("Floating", "Tiled", "Neighbour")),
}


def check_log(home, titles):
    """Quillo's log tells of the journey, and names no window, file or folder of it."""
    with open(os.path.join(home, "state/Quillo/quillo.log"), encoding="utf-8") as file:
        log = file.read()
    assert "restore finished" in log, "no log"
    for personal in (*titles, home):
        assert personal not in log, f"the log holds {personal}"


def run(quilloctl, window_manager, server, name):
    """What went wrong, or None."""
    started = time.monotonic()
    travel, titles = JOURNEYS[name]
    said = f"{name} with {window_manager} on {server}"
    try:
        journey = Journey(quilloctl, window_manager, server == "dummy", titles)
        try:
            travel(journey)
            check_log(journey.desktop.home, titles)
        finally:
            journey.desktop.close()
    except (AssertionError, subprocess.TimeoutExpired, RuntimeError) as trouble:
        print(f"FAILED: {said}: {trouble}", flush=True)
        return False
    print(f"ok: {said}, {time.monotonic() - started:.1f} s", flush=True)
    return True


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("quilloctl")
    parser.add_argument("--wm", default="openbox,xfwm4,metacity")
    parser.add_argument("--server", default="xvfb")
    parser.add_argument("--journey", choices=JOURNEYS)
    parser.add_argument("--jobs", type=int, default=2, help="journeys at a time, each on a server of its own")
    arguments = parser.parse_args()
    quilloctl = os.path.abspath(arguments.quilloctl)
    results = []
    for server in arguments.server.split(","):
        for window_manager in arguments.wm.split(","):
            own = [name for name in JOURNEYS if (name == "tiled") == (window_manager == "i3")]
            if window_manager not in ("openbox", "xfwm4") or server != "xvfb" or not browsers.installed():
                print(f"left out: browsers with {window_manager} on {server}", flush=True)
                own = [name for name in own if name != "browsers"]
            # The longest begin first. Of Xorg's own server there is one at a time.
            own.sort(key=lambda name: name not in ("browsers", "mouse", "tray"))
            with ThreadPoolExecutor(1 if server == "dummy" else arguments.jobs) as pool:
                results += pool.map(lambda name: run(quilloctl, window_manager, server, name),
                                    [arguments.journey] if arguments.journey else own)
    failed = results.count(False)
    print(f"{len(results) - failed} passed, {failed} failed", flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
