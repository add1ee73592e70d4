"""A private X server with a window manager and real applications, and an eye of its own on their windows.

What Quillo says is never taken for what is there: frames and states are read through xprop and xwininfo.
"""
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time

KNOWN_LEAKS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../leak-suppressions.txt")
XORG_CONFIGURATION = os.path.join(os.path.dirname(__file__), "../platform/x11/dummy-xorg.conf")

WINDOW_MANAGERS = {
    "openbox": ["openbox", "--sm-disable"],
    "xfwm4": ["xfwm4", "--compositor=off"],
    "metacity": ["metacity", "--sm-disable", "--no-composite"],
    "i3": ["i3", "-c", os.path.join(os.path.dirname(os.path.abspath(__file__)), "i3.conf")],
}


class Window:
    """One application window as the server shows it: frame (x, y, width, height) as a person sees it."""

    def __init__(self, number, title, frame, states, desktop):
        self.number, self.title, self.frame = number, title, frame
        self.minimized = "_NET_WM_STATE_HIDDEN" in states
        self.full_screen = "_NET_WM_STATE_FULLSCREEN" in states
        self.maximized = "_NET_WM_STATE_MAXIMIZED_VERT" in states
        self.desktop = desktop

    def __repr__(self):
        marks = [name for name in ("minimized", "full_screen", "maximized") if getattr(self, name)]
        return f"{self.title!r} {self.frame} desktop {self.desktop} {' '.join(marks)}"


class Desktop:
    def __init__(self, window_manager, dummy=False):
        self.processes = []
        self.window_manager = window_manager
        self.home = tempfile.mkdtemp(prefix="quillo-journey-")
        self.environment = {
            "LSAN_OPTIONS": f"suppressions={KNOWN_LEAKS}:print_suppressions=0",
            "PATH": os.environ["PATH"], "HOME": self.home, "LANG": "C.UTF-8", "GSETTINGS_BACKEND": "keyfile",
            "XDG_DATA_HOME": self.home + "/data", "XDG_CONFIG_HOME": self.home + "/config",
            "XDG_STATE_HOME": self.home + "/state", "XDG_CACHE_HOME": self.home + "/cache",
            "XDG_RUNTIME_DIR": self.home,
        }
        if "ASAN_OPTIONS" in os.environ:
            self.environment["ASAN_OPTIONS"] = os.environ["ASAN_OPTIONS"]
        self._write_settings()
        try:
            self._start_server(dummy)
            self._start_bus()
            self._start_window_manager()
        except BaseException:
            self.close()
            raise

    # -- life -----------------------------------------------------------------------------------------------
    def _write_settings(self):
        """One window for each document: the editor's own default is a tab, and a title shows one tab only."""
        folder = self.home + "/config/glib-2.0/settings"
        os.makedirs(folder)
        with open(folder + "/keyfile", "w") as file:
            file.write("[org/xfce/mousepad/preferences/window]\nopening-mode='window'\n")

    def _start_server(self, dummy):
        reading, writing = os.pipe()
        if dummy:
            command = ["Xorg", "-config", os.path.abspath(XORG_CONFIGURATION), "-logfile", self.home + "/xorg.log", "-sharevts", "-novtswitch"]
        else:
            command = ["Xvfb", "-screen", "0", "2560x1024x24"]
        command += ["-noreset", "-nolisten", "tcp", "-displayfd", str(writing)]
        self._spawn(command, pass_fds=[writing])
        os.close(writing)
        number = b""
        while not number.endswith(b"\n"):
            piece = os.read(reading, 16)
            if not piece:
                raise RuntimeError("the X server did not start")
            number += piece
        os.close(reading)
        self.environment["DISPLAY"] = ":" + number.decode().strip()
        if dummy:
            self.run("xrandr", "--addmode", "DUMMY1", "1280x1024")
            self.arrange({"DUMMY0": (0, 0), "DUMMY1": (1280, 0)})

    def _start_bus(self):
        bus = self._spawn(["dbus-daemon", "--session", "--nofork", "--print-address=1"], stdout=subprocess.PIPE)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def _start_window_manager(self):
        self._spawn(WINDOW_MANAGERS[self.window_manager])
        self.wait_for(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "window manager")
        self.wait_for(lambda: "=" in self.run("xprop", "-root", "_NET_NUMBER_OF_DESKTOPS"), "count of desktops")

    def _spawn(self, command, **options):
        options.setdefault("stdout", subprocess.DEVNULL)
        process = subprocess.Popen(command, env=self.environment, stderr=subprocess.DEVNULL,
                                   stdin=subprocess.DEVNULL, start_new_session=True, **options)
        self.processes.append(process)
        return process

    def close(self):
        for process in reversed(self.processes):
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()
        self._end_strays()
        shutil.rmtree(self.home, ignore_errors=True)

    def _end_strays(self):
        """Applications that a restore launched are nobody's children here: found by their private home."""
        marker = ("HOME=" + self.home).encode()
        for entry in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{entry}/environ", "rb") as file:
                    if marker in file.read().split(b"\0"):
                        os.kill(int(entry), signal.SIGKILL)
            except (OSError, ProcessLookupError):
                pass

    # -- acting ---------------------------------------------------------------------------------------------
    def run(self, *command):
        return subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=60).stdout.decode("utf-8", "replace")

    def start(self, title, *command):
        """Starts an application and waits for the window whose title contains `title`."""
        self._spawn(list(command))
        return self.wait_for(lambda: self.window(title), f"window of {command[0]}")

    def state(self, window, action, *names):
        for name in names:
            self.run("wmctrl", "-i", "-r", hex(window.number), "-b", f"{action},{name}")

    def move(self, window, x, y, width, height):
        self.run("wmctrl", "-i", "-r", hex(window.number), "-e", f"0,{x},{y},{width},{height}")

    def minimize(self, window):
        self.run("xdotool", "windowminimize", str(window.number))

    def close_window(self, window):
        self.run("wmctrl", "-i", "-c", hex(window.number))
        self.wait_for(lambda: all(w.number != window.number for w in self.windows()), "window to close")

    def arrange(self, positions, modes=None):
        """Puts the dummy driver's outputs where `positions` says and switches off the others."""
        command = ["xrandr"]
        for output in ("DUMMY0", "DUMMY1"):
            if output in positions:
                mode = (modes or {}).get(output, "1280x1024")
                command += ["--output", output, "--mode", mode, "--pos", "%dx%d" % positions[output]]
            else:
                command += ["--output", output, "--off"]
        first = min(positions, key=lambda output: positions[output])
        self.run(*command, "--output", first, "--primary")
        self.run("xrandr")  # the driver takes the change at the next full probe
        self.settle()

    # -- seeing ---------------------------------------------------------------------------------------------
    def windows(self):
        listed = re.findall(r"0x[0-9a-f]+", self.run("xprop", "-root", "_NET_CLIENT_LIST"))
        return [window for window in (self._read(int(number, 16)) for number in listed) if window]

    def window(self, title):
        return next((window for window in self.windows() if title in window.title), None)

    def _read(self, number):
        properties = self.run("xprop", "-id", hex(number), "-notype", "_NET_WM_NAME", "WM_NAME", "_NET_WM_STATE",
                              "_NET_WM_DESKTOP", "_NET_FRAME_EXTENTS", "_GTK_FRAME_EXTENTS")
        geometry = self.run("xwininfo", "-id", hex(number))
        place = [int(value) for value in re.findall(
            r"(?:Absolute upper-left [XY]|Width|Height): +(-?\d+)", geometry)]
        if len(place) != 4:
            return None

        def value(name):
            match = re.search(rf"^{name} = (.*)$", properties, re.MULTILINE)
            return match.group(1) if match else ""

        def edges(name):
            return [int(part) for part in value(name).split(",") if part] or [0] * 4

        extents, shadows = edges("_NET_FRAME_EXTENTS"), edges("_GTK_FRAME_EXTENTS")
        if "_NET_WM_STATE_FULLSCREEN" in value("_NET_WM_STATE"):
            shadows = [0] * 4
        left, right, top, bottom = (a - b for a, b in zip(extents, shadows))
        frame = (place[0] - left, place[1] - top, place[2] + left + right, place[3] + top + bottom)
        title = (value("_NET_WM_NAME") or value("WM_NAME")).strip('"')
        return Window(number, title, frame, value("_NET_WM_STATE"), value("_NET_WM_DESKTOP"))

    def wait_for(self, condition, what, seconds=15):
        deadline = time.monotonic() + seconds
        while True:
            result = condition()
            if result:
                return result
            if time.monotonic() > deadline:
                raise AssertionError(f"no {what} within {seconds} s under {self.window_manager}; "
                                     f"windows: {self.windows()}")
            time.sleep(0.05)

    def settle(self):
        """Waits until two readings 100 ms apart agree."""
        before = None
        for _ in range(50):
            now = repr(self.windows())
            if now == before:
                return
            before = now
            time.sleep(0.1)
        raise AssertionError(f"the desktop does not come to rest under {self.window_manager}")
