"""A journey over several desktops: windows sent elsewhere, a desktop removed; and one under a window manager that tiles."""
import os
import time

PLACES = {"Alpha": 0, "Beta": 1, "letter.txt": 2, "Garden": 1, "Question": 2}


def populate(journey):
    home, desktop = journey.desktop.home, journey.desktop
    # Said again until it is heard: a window manager that has only just come drops a request now and then.
    desktop.wait_for(lambda: count(desktop) == 3 or desktop.run("wmctrl", "-n", "3") is None, "third desktop")
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


def floating_and_tiled(journey):
    """What floats comes back; what is tiled goes to its desktop, and is said at once where it stands otherwise."""
    desktop = journey.desktop
    for title in journey.titles:
        desktop.start(title, "xterm", "-T", title)
    desktop.move(desktop.window("Floating"), 700, 300, 500, 300)
    desktop.settle()
    before = journey.seen()
    journey.quillo("save", "Morning")

    def restored(**statuses):
        started = time.monotonic()
        items = journey.restore()
        assert time.monotonic() - started < 2, "it waited for what cannot come"
        assert {item["title"]: item["status"] for item in items if item.get("title")} == statuses, items
        return items

    restored(Floating="restored", Tiled="restored", Neighbour="restored")
    assert {title: window.frame for title, window in journey.seen().items()} == {t: w.frame for t, w in before.items()}
    desktop.move(desktop.window("Floating"), 100, 100, 400, 200)
    intruder = desktop.start("Intruder", "xterm", "-T", "Intruder")
    desktop.settle()
    assert "skipped: tiled by the window manager" in journey.quillo("plan", "Morning")
    items = restored(Floating="restored", Tiled="skipped", Neighbour="skipped")
    assert all("tiled by" in item["reason"] for item in items if item["status"] == "skipped"), items
    desktop.run("i3-msg", f'[id={intruder.number}] kill; [title="Tiled"] move container to workspace 2')
    desktop.wait_for(lambda: desktop.window("Tiled").desktop == "1", "window on another workspace")
    items = {item["title"]: item["status"] for item in journey.restore() if item.get("title")}
    desktop.settle()
    for title, window in journey.seen().items():
        assert window.desktop == before[title].desktop, window
        assert (items[title] == "restored") == (window.frame == before[title].frame), (items, window)
