"""A journey over several desktops: windows sent elsewhere, a desktop removed."""
import os

PLACES = {"Alpha": 0, "Beta": 1, "letter.txt": 2, "Garden": 1, "Question": 2}


def populate(journey):
    home, desktop = journey.desktop.home, journey.desktop
    desktop.run("wmctrl", "-n", "3")
    desktop.wait_for(lambda: count(desktop) == 3, "third desktop")
    os.mkdir(home + "/Garden")
    with open(home + "/letter.txt", "w") as file:
        file.write("Dear reader\n")
    start = desktop.start
    windows = [start("Alpha", "xterm", "-T", "Alpha"), start("Beta", "xterm", "-T", "Beta"),
               start("letter.txt", "mousepad", home + "/letter.txt"), start("Garden", "thunar", home + "/Garden"),
               start("Question", "zenity", "--question", "--title=Question", "--text=Stay?")]
    for place, window in enumerate(windows):
        desktop.move(window, 60 + 110 * place, 50 + 60 * place, 484, 316)
    desktop.minimize(desktop.window("Garden"))
    desktop.wait_for(lambda: desktop.window("Garden").minimized, "minimized window")
    for title, number in PLACES.items():
        send(desktop, title, number)
    desktop.settle()


def count(desktop):
    return int(desktop.run("xdotool", "get_num_desktops"))


def send(desktop, title, number):
    desktop.run("wmctrl", "-i", "-r", hex(desktop.window(title).number), "-t", str(number))
    desktop.wait_for(lambda: desktop.window(title).desktop == str(number), f"{title} on desktop {number}")


def stand_on(desktop, number):
    desktop.run("wmctrl", "-s", str(number))
    desktop.wait_for(lambda: shown(desktop) == number, f"desktop {number}")


def shown(desktop):
    return int(desktop.run("xdotool", "get_desktop"))


def desktops_come_back(journey):
    """A desktop is removed and windows are moved; each comes back to its desktop, under the eyes of nobody."""
    desktop = journey.desktop
    populate(journey)
    before = journey.seen()
    assert {title: int(window.desktop) for title, window in before.items()} == PLACES, before
    journey.quillo("save", "Morning")

    stand_on(desktop, 1)
    desktop.run("wmctrl", "-n", "2")
    desktop.wait_for(lambda: count(desktop) == 2 and desktop.window("Question").desktop == "1", "desktop to go")
    send(desktop, "Alpha", 1)
    send(desktop, "Beta", 0)
    desktop.move(desktop.window("letter.txt"), 700, 400, 600, 300)
    plan = journey.quillo("plan", "Morning")
    assert "Desktops: 1 desktop would be created on display " in plan, plan
    assert plan.count("desktop 3 (to be created)") == 4, plan  # where to and the step, of two windows

    restored(journey, before, created=1, on=1)
    restored(journey, before, created=0, on=1)

    stand_on(desktop, 0)
    desktop.close_window(desktop.window("letter.txt"))  # launched again, it opens on the desktop in front
    desktop.run("wmctrl", "-n", "1")
    desktop.wait_for(lambda: count(desktop) == 1, "one desktop")
    restored(journey, before, created=2, on=0)


def restored(journey, before, created, on):
    items = journey.restore()
    journey.check_back(before, items)
    assert [item["count"] for item in items if item["status"] == "createdDesktops"] == [created] * (created > 0), items
    assert count(journey.desktop) == 3, count(journey.desktop)
    assert shown(journey.desktop) == on, "the person was taken to another desktop"
