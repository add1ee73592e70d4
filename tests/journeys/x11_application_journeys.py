"""Journeys in which applications are launched with their documents, hidden, and asked to quit."""
import json
import os


def populate(journey, documents, folders):
    """An editor with documents and a file manager with folders, each in a window of its own."""
    home, desktop = journey.desktop.home, journey.desktop
    expected = len(desktop.windows()) + len(documents) + len(folders)
    for name in documents:
        with open(f"{home}/{name}", "w") as file:
            file.write("Dear reader\n")
    for name in folders:
        os.mkdir(f"{home}/{name}")
    if documents:
        desktop.start(documents[-1], "mousepad", *(f"{home}/{name}" for name in documents))
    if folders:
        desktop.start(folders[-1], "thunar", *(f"{home}/{name}" for name in folders))
    desktop.wait_for(lambda: len(desktop.windows()) == expected, "windows")
    for place, window in enumerate(desktop.windows()):
        desktop.move(window, 40 + 90 * place, 30 + 70 * place, 640 + 10 * place, 420 + 10 * place)
    desktop.settle()


def statuses(items):
    return [item["status"] for item in items]


def documents_come_back(journey):
    """Closed documents and folders are opened again, once each, in their windows' places."""
    desktop = journey.desktop
    populate(journey, ["letter.txt", "list.txt"], ["Garden", "House"])
    before = journey.seen()
    journey.quillo("save", "Morning")

    for window in desktop.windows():
        desktop.close_window(window)
    items = journey.restore()
    journey.check_back(before, items)
    assert statuses(items).count("launched") == 2, items
    assert sum(item["count"] for item in items if item["status"] == "opened") == 4, items
    assert len(desktop.windows()) == 4, f"something was opened twice, or empty: {desktop.windows()}"
    nothing_more(journey, before)

    # One of each, while its application runs.
    desktop.close_window(desktop.window("letter.txt"))
    desktop.close_window(desktop.window("House"))
    items = journey.restore()
    journey.check_back(before, items)
    assert "launched" not in statuses(items), items
    assert len(desktop.windows()) == 4, desktop.windows()
    nothing_more(journey, before)


def terminals_come_back(journey):
    """Closed terminals come back one for one, each in its place and with its shell in its folder."""
    desktop = journey.desktop
    names = ("Garden", "House", "it's a %f", "-r", "Garden")
    for place, name in enumerate(names):
        os.makedirs(f"{desktop.home}/{name}", exist_ok=True)
        window = desktop.start(f"T{place}", "xterm", "-T", f"T{place}", "-e", "sh", "-c", 'cd "$0" && exec bash',
                               f"{desktop.home}/{name}")
        desktop.move(window, 40 + 90 * place, 30 + 70 * place, 484, 316)
    desktop.settle()
    before = shells(desktop)
    assert sorted(folder for _, folder in before) == sorted(f"{desktop.home}/{name}" for name in names), before
    journey.quillo("save", "Morning")
    for window in desktop.windows():
        desktop.close_window(window)
    for again in (False, True):
        items = journey.restore()
        assert [status for status in statuses(items) if status in ("skipped", "failed")] == [], items
        assert ("launched" in statuses(items)) != again, items
        desktop.settle()
        assert len(desktop.windows()) == len(names), f"{desktop.windows()} {items}"
        for (frame, folder), (saved, wanted) in zip(shells(desktop), before):
            assert folder == wanted and all(abs(a - b) <= 2 for a, b in zip(frame[:2], saved)), (
                shells(desktop), before)


def shells(desktop):
    """Frame and folder of each terminal, from left to right."""
    found = []
    for window in desktop.windows():
        pid = desktop.run("xprop", "-id", hex(window.number), "-notype", "_NET_WM_PID").split()[-1]
        with open(f"/proc/{pid}/task/{pid}/children") as file:
            shell = file.read().split()[0]
        found.append((window.frame, os.readlink(f"/proc/{shell}/cwd")))
    return sorted(found)


def nothing_more(journey, before):
    """A second restore opens nothing and leaves every window where it is."""
    numbers = {window.number for window in journey.desktop.windows()}
    items = journey.restore()
    journey.check_back(before, items)
    assert set(statuses(items)) <= {"restored", "adjusted", "finished"}, items
    assert {window.number for window in journey.desktop.windows()} == numbers, journey.desktop.windows()


def clean_slate(journey):
    """Everything else is hidden, or asked to quit; what is unsaved stays, and so does the terminal."""
    desktop = journey.desktop
    populate(journey, [], ["Garden"])
    before = journey.seen()
    journey.quillo("save", "Morning")
    populate(journey, ["draft.txt"], [])
    editor = desktop.window("draft.txt")
    desktop.run("xdotool", "windowactivate", "--sync", str(editor.number), "type", "unsaved")
    desktop.wait_for(lambda: desktop.window("*"), "unsaved document")
    desktop.start("Bystander", "zenity", "--info", "--title=Bystander", "--text=Nothing to save")

    items = restore_in_terminal(journey, "hide")
    journey.check_back(before, items)
    assert said(items, "Hidden") == {"org.xfce.mousepad", "zenity"}, items
    assert all(desktop.window(title).minimized for title in ("draft.txt", "Bystander")), desktop.windows()
    assert not desktop.window("Terminal hide").minimized, "the terminal that runs the command was hidden"

    items = restore_in_terminal(journey, "quit")
    journey.check_back(before, items)
    assert said(items, "Quit") == {"zenity"}, items
    assert said(items, "App is still running; it may need you to save changes") == {"org.xfce.mousepad"}, items
    assert desktop.window("Bystander") is None, desktop.windows()
    assert desktop.window("*"), "the unsaved document is gone"
    assert any("draft.txt" not in w.title and "Thunar" not in w.title and "Terminal" not in w.title
               for w in desktop.windows()), f"the editor does not ask: {desktop.windows()}"
    assert desktop.window("Terminal quit"), "the terminal that runs the command was closed"


def restore_in_terminal(journey, mode):
    """As a person would: in a terminal, which is one of the open applications and saved nowhere."""
    desktop, output = journey.desktop, f"{journey.desktop.home}/{mode}.out"
    script = ('"$0" --json restore Morning --clean-slate "$1" > "$2.part" 2>&1; echo "exit $?" >> "$2.part"; '
              'mv "$2.part" "$2"; read line')
    desktop.start(f"Terminal {mode}", "xterm", "-T", f"Terminal {mode}", "-e", "sh", "-c", script,
                  journey.quilloctl, mode, output)
    desktop.wait_for(lambda: os.path.exists(output), f"end of a restore with --clean-slate {mode}", 30)
    with open(output) as file:
        lines = file.read().splitlines()
    assert lines[-1] == ("exit 0" if mode == "hide" else "exit 3"), lines
    return [json.loads(line) for line in lines[:-1]]


def said(items, text):
    """The applications of which the report says this."""
    return {item["bundleIdentifier"] for item in items if text in (item.get("text"), item.get("reason"))}
