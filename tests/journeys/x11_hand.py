"""A person's hands: find what a screen reader would name, move the real pointer there, click and type."""
import json
import os
import time

READER = os.path.join(os.path.dirname(__file__), "accessible_controls.py")
WHEEL_DOWN = 5
DOUBLE_CLICK_SECONDS = 0.4  # Qt's, where no desktop says otherwise


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
        """The foremost control with this name, once it has been where it is for as long as a person takes to
        press it: before that a page that has just come hears nothing."""
        before, since = None, 0

        def at_rest():
            nonlocal before, since
            usable = [c for c in self.controls() if c["name"] == name and c["usable"]]
            last, before = before, usable[-1] if usable else None
            if before != last:
                since = time.monotonic()
            return before if before == last and time.monotonic() - since > DOUBLE_CLICK_SECONDS else None

        return self.wait_for(at_rest, f"control {name!r}")

    # -- acting ---------------------------------------------------------------------------------------------
    def click(self, name, button=1, times=1, milliseconds=60):
        self.click_at(*self.reached(name), button, times, milliseconds)

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

    def click_at(self, x, y, button=1, times=1, milliseconds=60):
        self.desktop.run("xdotool", "mousemove", str(x), str(y),
                         "click", "--repeat", str(times), "--delay", str(milliseconds), str(button))

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
