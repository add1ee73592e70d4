"""The application itself, by the keyboard only: introduction, first save, resume by the global shortcut, update."""
import glob
import json
import os


def saved(journey):
    """The library's files, by the workspaces' names."""
    workspaces = {}
    for file in glob.glob(journey.desktop.home + "/data/Quillo/workspaces/*.json"):
        with open(file, encoding="utf-8") as stream:
            workspace = json.load(stream)
        workspaces[workspace["name"]] = workspace
    return workspaces


def applications(workspace):
    return [application["bundleIdentifier"] for application in workspace["snapshot"]["applications"]]


def captures(journey):
    """How many captures the log tells of: the one sign from outside that a review is about to open."""
    try:
        with open(journey.desktop.home + "/state/Quillo/quillo.log", encoding="utf-8") as file:
            return sum(" captured " in line for line in file)
    except FileNotFoundError:
        return 0


def application(journey):
    desktop, home = journey.desktop, journey.desktop.home
    quillo = os.path.join(os.path.dirname(journey.quilloctl), "quillo")
    keys = lambda *names: desktop.run("xdotool", "key", *names)
    with open(f"{home}/letter.txt", "w", encoding="utf-8") as file:
        file.write("Dear reader\n")
    desktop.start("Notes", "xterm", "-T", "Notes")
    desktop.start("letter.txt", "mousepad", f"{home}/letter.txt")
    desktop.start("Quillo", quillo)
    desktop.settle()

    keys("Return", "Return")
    before = captures(journey)
    keys("Return")
    desktop.wait_for(lambda: captures(journey) > before, "capture of the first save")
    desktop.settle()
    desktop.run("xdotool", "type", "Morning")
    keys("ctrl+Return")
    desktop.wait_for(lambda: "Morning" in saved(journey), "workspace saved in the review")
    first = saved(journey)["Morning"]
    assert len(applications(first)) == 2, applications(first)
    assert not any("quillo" in name.lower() for name in applications(first)), "it saved itself"

    desktop.close_window(desktop.window("letter.txt"))
    keys("ctrl+alt+super+r")
    desktop.wait_for(lambda: desktop.window("Quillo switcher"), "switcher")
    desktop.run("xdotool", "type", "morn")
    keys("Return")
    desktop.wait_for(lambda: desktop.window("letter.txt"), "editor")
    desktop.wait_for(lambda: saved(journey)["Morning"].get("lastRestoredAt"), "time of the last use")
    desktop.wait_for(lambda: not desktop.window("Quillo restore"), "end of the panel", 30)

    # A second start only brings the window forward; the card's menu renews the workspace.
    assert desktop.run(quillo) == "", "the second start had something to say"
    assert len([w for w in desktop.windows() if w.title == "Quillo"]) == 1, desktop.windows()
    desktop.close_window(desktop.window("Notes"))
    desktop.settle()
    before = captures(journey)
    keys("ctrl+f", "Down", "Menu")
    desktop.settle()
    keys("Down", "Down", "Down", "Return")
    desktop.wait_for(lambda: captures(journey) > before, "capture of the update")
    desktop.settle()
    keys("ctrl+Return")
    desktop.wait_for(lambda: applications(saved(journey)["Morning"]) == ["org.xfce.mousepad"], "update")
    assert saved(journey)["Morning"]["id"] == first["id"]

    # Without a tray the person is asked, and may keep the program running; another start brings it back.
    desktop.run("wmctrl", "-c", "Quillo")
    desktop.settle()
    assert desktop.window("Quillo"), "it went without a word"
    keys("Right", "Return")
    desktop.wait_for(lambda: not desktop.window("Quillo"), "end of the window")
    desktop.run(quillo)
    desktop.wait_for(lambda: desktop.window("Quillo"), "main window again")
