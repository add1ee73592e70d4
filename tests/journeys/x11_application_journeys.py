"""A journey in which applications are hidden, and asked to quit."""
import json
import os


def clean_slate(journey):
    """Everything else is hidden, or asked to quit; what is unsaved stays, and so does the terminal."""
    desktop, home = journey.desktop, journey.desktop.home
    os.mkdir(f"{home}/Garden")
    desktop.move(desktop.start("Garden", "thunar", f"{home}/Garden"), 40, 30, 640, 420)
    desktop.settle()
    before = journey.seen()
    journey.quillo("save", "Morning")
    with open(f"{home}/draft.txt", "w") as file:
        file.write("Dear reader\n")
    editor = desktop.start("draft.txt", "mousepad", f"{home}/draft.txt")
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
