"""Tabs of real browsers, each window's in its place, in order and once; and no word of a private window."""
import http.server
import json
import os
import shutil
import threading
import time

PRIVATE, PUBLIC = "secretpage", "openpage"
COUNTS = (2, 5, 20)  # tabs of each window; the last one stands on the second desktop


class Browser:
    """`more`: what comes before addresses that are to be tabs of the window in front."""

    def __init__(self, identifier, adapter, command, window, private, more):
        self.identifier, self.adapter, self.command = identifier, adapter, command
        self.window, self.private, self.more = window, private, more


BROWSERS = (
    Browser("chromium", "chromium", ["chromium", *(["--no-sandbox"] if os.geteuid() == 0 else []), "--no-first-run",
                                     "--password-store=basic"], ["--new-window"], ["--incognito"], []),
    Browser("firefox-esr", "firefox", ["firefox-esr"], [], ["--private-window"], ["--new-tab"]),
)


def installed():
    return [browser for browser in BROWSERS if shutil.which(browser.command[0])]


class Pages(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.end_headers()
        self.wfile.write(f"<title>{self.path[1:]}</title>".encode())

    def log_message(self, *_):
        pass


def tabs_come_back(journey):
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pages)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    try:
        journey.desktop.run("wmctrl", "-n", "2")
        for browser in installed():
            Journey(journey, browser, f"http://localhost:{server.server_port}/").travel()
    finally:
        server.shutdown()


class Journey:
    def __init__(self, outer, browser, root):
        self.outer, self.desktop, self.browser = outer, outer.desktop, browser
        self.name = "Morning " + browser.adapter
        self.wanted = [[f"{root}{PUBLIC}-{i}-{k}" for k in range(count)] for i, count in enumerate(COUNTS)]
        self.secret = root + PRIVATE

    # -- the browser ----------------------------------------------------------------------------------------
    def numbers(self):
        return {window.number for window in self.desktop.windows()}

    def opened(self, *arguments):
        """The window that a command of the browser opens; its first one also starts it."""
        before = self.numbers()
        self.desktop._spawn([*self.browser.command, *arguments])
        number = self.desktop.wait_for(lambda: self.numbers() - before, "window of the browser", 60).pop()
        return next(window for window in self.desktop.windows() if window.number == number)

    def quit(self):
        for window in self.desktop.windows():
            self.desktop.run("wmctrl", "-i", "-c", hex(window.number))
        self.desktop.wait_for(lambda: not self.desktop.windows() and not self.processes(), "end of the browser", 30)

    def processes(self):
        """Of this desktop's browser: a machine may run others."""
        found = []
        for entry in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{entry}/comm") as name, open(f"/proc/{entry}/environ", "rb") as environment:
                    if (name.read().strip() == self.browser.command[0]
                            and b"HOME=" + self.desktop.home.encode() in environment.read().split(b"\0")):
                        found.append(int(entry))
            except OSError:
                continue
        return found

    def prepare(self):
        """Its menu entry starts it as this journey does; of Firefox nothing greets or asks."""
        if self.browser.adapter == "chromium":
            folder = self.desktop.home + "/data/applications"
            os.makedirs(folder, exist_ok=True)
            with open(folder + "/chromium.desktop", "w") as file:
                file.write("[Desktop Entry]\nType=Application\nName=Chromium\nStartupWMClass=chromium\nExec="
                           + " ".join(self.browser.command) + " %U\n")
            return
        self.opened()
        self.quit()
        profiles = [folder for folder, _, files in os.walk(self.desktop.home) if "prefs.js" in files]
        for folder in profiles:
            with open(folder + "/user.js", "w") as file:
                for name in ("browser.aboutwelcome.enabled", "datareporting.policy.dataSubmissionEnabled",
                             "browser.shell.checkDefaultBrowser", "browser.tabs.warnOnClose",
                             "browser.warnOnQuit"):
                    file.write(f'user_pref("{name}", false);\n')
                file.write('user_pref("browser.startup.homepage_override.mstone", "ignore");\n')

    # -- Quillo ---------------------------------------------------------------------------------------------
    def saved(self, name, *update):
        """The addresses of each window of the browser, as a capture tells them now."""
        self.outer.quillo("save", *update, name, "--adapter", self.browser.adapter)
        document = json.loads(self.outer.quillo("--json", "show", name))
        own = next(one for one in document["snapshot"]["applications"]
                   if one["bundleIdentifier"] == self.browser.identifier)
        return sorted(window["urls"] for window in own.get("context", {}).get("windows", []))

    def await_saved(self, name, wanted):
        """Files are seconds behind, Firefox's up to thirty."""
        last = self.saved(name)
        deadline = time.monotonic() + 60
        while last != sorted(wanted):
            assert time.monotonic() < deadline, f"{self.browser.identifier} has {last}, not {wanted}"
            time.sleep(2)
            last = self.saved(name, "--update")

    def restored(self, opened):
        items = self.outer.restore(self.name, "--adapter", self.browser.adapter)
        count = sum(item.get("count", 1) for item in items if item["status"] == "opened")
        assert count == opened and not any(item["status"] == "failed" for item in items), items

    # -- the journey ----------------------------------------------------------------------------------------
    def travel(self):
        self.prepare()
        blank = self.opened()
        windows = [self.opened(*self.browser.window, *addresses) for addresses in self.wanted]
        self.desktop.close_window(blank)
        for i, window in enumerate(windows):
            self.desktop.move(window, 40 + 300 * i, 50 + 60 * i, 900 - 100 * i, 600)
        self.desktop.run("wmctrl", "-i", "-r", hex(windows[2].number), "-t", "1")
        private = self.opened(*self.browser.private, self.secret)
        self.desktop.wait_for(lambda: self.desktop.window(PRIVATE), "private page", 30)
        self.await_saved(self.name, self.wanted)
        self.desktop.settle()
        places = {window.number: window for window in self.desktop.windows()}
        self.nothing_private()

        # A window is closed, another gets a tab and goes elsewhere.
        self.desktop.close_window(windows[1])
        self.desktop.run("wmctrl", "-i", "-a", hex(windows[0].number))
        self.desktop.wait_for(lambda: self.desktop.run("xdotool", "getactivewindow").strip() == str(windows[0].number),
                              "window in front")
        self.desktop.run(*self.browser.command, *self.browser.more, self.wanted[0][0] + "-extra")
        self.desktop.move(windows[0], 700, 300, 500, 400)
        now = [[*self.wanted[0], self.wanted[0][0] + "-extra"], self.wanted[2]]
        self.await_saved("Noon " + self.browser.adapter, now)
        self.restored(opened=COUNTS[1])
        self.desktop.settle()
        new, = self.numbers() - set(places)
        for number, was in ((windows[0].number, windows[0]), (new, windows[1]), (windows[2].number, windows[2])):
            was, is_ = places[was.number], next(one for one in self.desktop.windows() if one.number == number)
            assert max(abs(a - b) for a, b in zip(was.frame, is_.frame)) <= 2, f"{was} came back as {is_}"
            assert was.desktop == is_.desktop, f"{was} came back as {is_}"
        self.await_saved("Evening " + self.browser.adapter, [*now, self.wanted[1]])
        before = self.numbers()
        self.restored(opened=0)
        assert self.numbers() == before, "a second restore opened a window"

        assert private.number in before, "the private window went"
        self.quit()
        self.restored(opened=sum(COUNTS))
        self.await_saved("Night " + self.browser.adapter, self.wanted)
        self.restored(opened=0)
        self.nothing_private()
        self.quit()

    def nothing_private(self):
        for folder in ("data/Quillo", "state/Quillo"):
            found = self.desktop.run("grep", "-rl", PRIVATE, os.path.join(self.desktop.home, folder))
            assert PRIVATE not in found and "/" not in found, f"{PRIVATE} is in {found}"
