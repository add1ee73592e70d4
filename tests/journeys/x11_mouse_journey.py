"""The application by the mouse, with the keyboard for names and paths only; its files tell what happened."""
import glob
import json
import os
import re

from x11_hand import Hand
from x11_interface_journey import saved

SLUGGISH_PLACE = (60, 500, 484, 316)


def titles(workspace):
    return sorted(window["title"] for app in workspace["snapshot"]["applications"] for window in app["windows"])


def files(journey, folder="workspaces"):
    """Every file of the library or the history, with its bytes."""
    contents = {}
    for file in glob.glob(f"{journey.desktop.home}/data/Quillo/{folder}/**", recursive=True):
        if os.path.isfile(file):
            with open(file, "rb") as stream:
                contents[file] = stream.read()
    return contents


def sluggish_application(desktop):
    """A terminal that takes its time to start for as long as there is a file "sluggish"."""
    entries, script = desktop.home + "/data/applications", desktop.home + "/sluggish.sh"
    os.makedirs(entries)
    with open(script, "w", encoding="utf-8") as file:
        file.write("while test -e $HOME/sluggish; do sleep 0.1; done; exec xterm -class Sluggish -T Sluggish\n")
    with open(entries + "/sluggish.desktop", "w", encoding="utf-8") as file:
        file.write("[Desktop Entry]\nType=Application\nName=Sluggish\nStartupWMClass=Sluggish\n"
                   f"Exec=sh {script}\n")
    return script


def by_mouse(journey):
    desktop = journey.desktop
    desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    script = sluggish_application(desktop)
    desktop.start("Notes", "xterm", "-T", "Notes")
    desktop.start("Secret", "xterm", "-T", "Secret")
    desktop.move(desktop.start("Sluggish", "sh", script), *SLUGGISH_PLACE)
    quillo = os.path.join(os.path.dirname(journey.quilloctl), "quillo")
    desktop.start("Quillo", quillo)
    desktop.settle()
    hand = Hand(desktop)

    first_save_without_a_window(journey, hand)
    export_and_import(journey, hand)
    one_workspace(journey, hand)
    resume(journey, hand)
    stop_a_restore(journey, hand)
    delete_everything(journey, hand)


def first_save_without_a_window(journey, hand):
    for step in (2, 3):
        hand.click("Continue")
        hand.wait_until_shown(f"Step {step} of 3")
    save(journey, hand, "Save current desktop", "Morning", left_out="Secret")
    assert titles(saved(journey)["Morning"]) == ["Notes", "Sluggish"], saved(journey)


def save(journey, hand, button, name, left_out=None):
    hand.click(button)
    if left_out:
        hand.click("Include " + left_out)
        hand.wait_until_shown("2\xa0of\xa03\xa0windows")
    hand.click("Name this workspace")
    hand.type(name)
    hand.click("Save Workspace")
    hand.wait_for(lambda: name in saved(journey), "workspace saved in the review")


def choose(hand, workspace, action):
    """From the menu of the workspace's card."""
    hand.click(workspace, button=3)
    hand.click(action)


def export_and_import(journey, hand):
    home = journey.desktop.home
    choose(hand, "Morning", "Export Workspace…")
    hand.answer_in("Export Workspace", home + "/exported.json")
    hand.wait_until_shown("Exported Morning")
    with open(home + "/exported.json", encoding="utf-8") as file:
        exported = json.load(file)
    morning = saved(journey)["Morning"]
    assert exported == morning, exported

    hand.keys("ctrl+i")
    hand.answer_in("Import Workspace", home + "/exported.json")
    hand.wait_until_shown("Imported Morning 2")
    library = saved(journey)
    assert set(library) == {"Morning", "Morning 2"} and library["Morning"] == morning, library
    assert library["Morning 2"]["snapshot"] == morning["snapshot"]
    assert library["Morning 2"]["id"] != morning["id"]


def one_workspace(journey, hand):
    """Opened by a click, renamed, duplicated; and the copies deleted, each after a question."""
    hand.click("Morning 2")
    hand.click("Rename")
    hand.type("Evening")
    hand.keys("Return")
    hand.wait_for(lambda: set(saved(journey)) == {"Morning", "Evening"}, "new name")
    hand.click("Duplicate Workspace")
    hand.wait_for(lambda: len(saved(journey)) == 3, "copy")
    copy = next(name for name in saved(journey) if name not in ("Morning", "Evening"))
    hand.click("Delete Workspace")
    hand.answer("Delete “Evening”?", "Cancel")
    assert len(saved(journey)) == 3, "deleted though it was called off"
    hand.click("Delete Workspace")
    hand.answer("Delete “Evening”?", "Delete Workspace")
    hand.wait_for(lambda: set(saved(journey)) == {"Morning", copy}, "end of what was deleted")
    choose(hand, copy, "Delete Workspace")
    hand.answer(f"Delete “{copy}”?", "Delete Workspace")
    hand.wait_for(lambda: set(saved(journey)) == {"Morning"}, "end of the copy")


def panel_is_over(journey, hand):
    hand.wait_for(lambda: not journey.desktop.window("Quillo restore"), "end of the panel", 30)


def stack(desktop):
    """Titles of all windows, the topmost last, and of the one that has the keyboard."""
    numbers = [int(number, 16) for number in re.findall(r"0x[0-9a-f]+", desktop.run("xprop", "-root", "_NET_CLIENT_LIST_STACKING"))]
    titles = {window.number: window.title for window in desktop.windows()}
    active = re.search(r"0x[0-9a-f]+", desktop.run("xprop", "-root", "_NET_ACTIVE_WINDOW"))
    return [titles.get(number, "") for number in numbers], titles.get(int(active.group(), 16)) if active else None


def in_front(journey):
    """What was brought back stands before Quillo's window and has the keyboard."""
    titles, active = stack(journey.desktop)
    return titles.index("Quillo") < min(titles.index("Notes"), titles.index("Sluggish")) and active in ("Notes", "Sluggish")


def double_clicks_only_open(journey, hand):
    """Quick and slow ones, from over where the detail has its buttons; the last one leaves the detail open."""
    before = files(journey)
    for pause in (100, 200, 300, 350):
        hand.click("Morning", times=2, milliseconds=pause)
        hand.click("Done", times=2, milliseconds=pause)  # over the settings of the library
    hand.click("Morning")
    hand.wait_until_shown("When resuming")
    assert files(journey) == before and not journey.desktop.window("Quillo restore"), "a double click did more than open"


def resume(journey, hand):
    """By the button of the detail, then by the card's: the window that was closed is back in its place."""
    desktop = journey.desktop
    double_clicks_only_open(journey, hand)
    for back in ("Done", None):
        desktop.close_window(desktop.window("Sluggish"))
        last_use = saved(journey)["Morning"].get("lastRestoredAt")
        if not back:
            hand.point_at("Morning")  # the button comes with the pointer
        hand.click("Resume workspace")
        hand.wait_for(lambda: saved(journey)["Morning"].get("lastRestoredAt") != last_use, "time of the last use", 30)
        assert desktop.window("Sluggish").frame[:2] == SLUGGISH_PLACE[:2], desktop.windows()
        hand.wait_for(lambda: in_front(journey), "windows in front: " + repr(stack(desktop)))
        hand.click("Close")
        panel_is_over(journey, hand)
        to_quillo(journey)
        if back:
            hand.click(back)
    who_went_elsewhere_stays_there(journey, hand)
    to_quillo(journey)


def to_quillo(journey):
    """Another start brings its window forward."""
    journey.desktop.run(os.path.join(os.path.dirname(journey.quilloctl), "quillo"))
    journey.desktop.wait_for(lambda: stack(journey.desktop)[1] == "Quillo", "Quillo in front")
    journey.desktop.settle()


def who_went_elsewhere_stays_there(journey, hand):
    """The person types into a window of no workspace while the restore waits for a slow application."""
    desktop = journey.desktop
    to_quillo(journey)
    desktop.close_window(desktop.window("Sluggish"))
    with open(desktop.home + "/sluggish", "w", encoding="utf-8"):
        pass
    hand.point_at("Morning")
    hand.click("Resume workspace")
    hand.wait_until_shown("Opening 1 app…")
    other = desktop.window("Secret")
    desktop.run("xdotool", "windowactivate", "--sync", str(other.number))
    os.remove(desktop.home + "/sluggish")
    hand.wait_until_shown("Morning is back")
    desktop.settle()
    titles, active = stack(desktop)
    assert titles.index("Quillo") < titles.index("Notes"), titles
    # The window manager may give the keyboard to a window that is new; Quillo gives it to none.
    assert active in ("Secret", "Sluggish"), active
    hand.click("Close")
    panel_is_over(journey, hand)


def stop_a_restore(journey, hand):
    """While the application takes its time; its window is left where it then appears."""
    desktop = journey.desktop
    desktop.close_window(desktop.window("Sluggish"))
    with open(desktop.home + "/sluggish", "w", encoding="utf-8"):
        pass
    last_use = saved(journey)["Morning"]["lastRestoredAt"]
    hand.point_at("Morning")
    hand.click("Resume workspace")
    hand.click("Stop resuming")
    panel_is_over(journey, hand)
    os.remove(desktop.home + "/sluggish")
    late = desktop.wait_for(lambda: desktop.window("Sluggish"), "window of the slow application")
    desktop.settle()
    assert desktop.window("Sluggish").frame[:2] != SLUGGISH_PLACE[:2], f"a stopped restore moved {late}"
    assert saved(journey)["Morning"]["lastRestoredAt"] == last_use


def delete_everything(journey, hand):
    """The library and the sessions, after a question; the program lives on, and saves again."""
    to_quillo(journey)
    hand.click("Settings · Ctrl+,")
    hand.click("Save the last session")
    hand.wait_for(lambda: files(journey, "sessions"), "session")
    hand.click("Privacy")
    hand.click("Delete all workspace data…")
    hand.answer("Delete all saved workspaces?", "Cancel")
    assert files(journey) and files(journey, "sessions"), "deleted though it was called off"
    hand.click("Delete all workspace data…")
    hand.answer("Delete all saved workspaces?", "Delete Everything")
    hand.wait_for(lambda: not files(journey) and not files(journey, "sessions"), "end of all data")
    hand.click("Back to workspaces · esc")
    hand.wait_until_shown("Save your first workspace")
    save(journey, hand, "Save Current Desktop…", "Afterwards")
    assert list(saved(journey)) == ["Afterwards"] and not files(journey, "sessions")
