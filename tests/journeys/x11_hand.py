"""A person's hands: find what a screen reader would name, move the real pointer there, click and type."""
import json
import os

READER = os.path.join(os.path.dirname(__file__), "accessible_controls.py")
WHEEL_DOWN = 5


class Hand:
    def __init__(self, desktop, application="Quillo"):
        self.desktop, self.application = desktop, application

    # -- seeing ---------------------------------------------------------------------------------------------
    def controls(self):
        return json.loads(self.desktop.run("/usr/bin/python3", READER, self.application))

    def wait_for(self, condition, what, seconds=15):
        try:
            return self.desktop.wait_for(condition, what, seconds)
        except AssertionError as trouble:
            names = sorted({control["name"] for control in self.controls()})
            raise AssertionError(f"{trouble}; on the screen: {names}") from None

    def wait_until_shown(self, words, seconds=15):
        shows = lambda: next((c["name"] for c in self.controls() if words in c["name"]), None)
        return self.wait_for(shows, f"{words!r} on the screen", seconds)

    def control(self, name):
        """The foremost control with this name, once two looks at it agree."""
        before = None

        def at_rest():
            nonlocal before
            usable = [c for c in self.controls() if c["name"] == name and c["usable"]]
            before, last = usable[-1] if usable else None, before
            return before if before == last else None

        return self.wait_for(at_rest, f"control {name!r}")

    # -- acting ---------------------------------------------------------------------------------------------
    def click(self, name, button=1, times=1):
        self.click_at(*self.reached(name), button, times)

    def point_at(self, name):
        self.desktop.run("xdotool", "mousemove", *map(str, self.reached(name)))

    def reached(self, name):
        """The middle of the control, which the wheel has brought into its window if need be."""
        while True:
            control = self.control(name)
            (x, y, width, height), (left, top, window_width, window_height) = control["place"], control["window"]
            middle = (x + width // 2, y + height // 2)
            if middle[1] < top + window_height - 20:
                return middle
            self.click_at(left + window_width // 2, top + window_height // 2, WHEEL_DOWN)
            self.wait_for(lambda: self.control(name)["place"][1] < y, f"way to {name!r} by the wheel")

    def click_at(self, x, y, button=1, times=1):
        self.desktop.run("xdotool", "mousemove", str(x), str(y),
                         "click", "--repeat", str(times), "--delay", "60", str(button))

    def keys(self, *names):
        self.desktop.run("xdotool", "key", *names)

    def type(self, text):
        self.desktop.run("xdotool", "type", text)

    def answer(self, question, button):
        self.wait_until_shown(question)
        self.click(button)
        self.wait_for(lambda: all(c["name"] != question for c in self.controls()), f"end of {question!r}")

    def answer_in(self, dialog, text):
        """Types into the window called so, once the keyboard is there, and waits for its end."""
        focus = lambda: self.desktop.run("xdotool", "getwindowfocus", "getwindowname").strip()
        self.wait_for(lambda: focus() == dialog, f"keyboard in {dialog!r}")
        self.type(text)
        self.keys("Return")
        self.wait_for(lambda: not self.desktop.window(dialog), f"end of {dialog!r}")
