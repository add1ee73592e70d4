#!/usr/bin/python3
"""Prints what an application shows, as a screen reader would find it: a JSON array of its controls.

Usage: accessible_controls.py APPLICATION       (in the session of a DBUS_SESSION_BUS_ADDRESS)

Only what is visible is listed, what lies in front last: name, role, whether it is checked and can be used, and the
rectangles of it and of its window on the screen.
It runs as a program of its own because Debian's Python, not any other, has the bindings.
"""
import json
import sys

from gi.repository import Gio, GLib

CHECKED, SENSITIVE, SHOWING = 4, 24, 25  # places in the set of states
REGISTRY = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")


def connect():
    session = Gio.bus_get_sync(Gio.BusType.SESSION)
    address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None, 0, 5000)
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(address.unpack()[0], flags)


class Object:
    """One accessible object; every question to it may fail because it is gone."""
    bus = None

    def __init__(self, reference):
        self.owner, self.path = reference

    def ask(self, interface, method, *arguments):
        given = GLib.Variant(*arguments) if arguments else None
        return self.bus.call_sync(self.owner, self.path, interface, method, given, None, 0, 5000).unpack()[0]

    def name(self):
        return self.ask("org.freedesktop.DBus.Properties", "Get", "(ss)", ("org.a11y.atspi.Accessible", "Name"))

    def children(self):
        return [Object(child) for child in self.ask("org.a11y.atspi.Accessible", "GetChildren")]

    def states(self):
        low, high = self.ask("org.a11y.atspi.Accessible", "GetState")
        return low | high << 32

    def place(self):
        return self.ask("org.a11y.atspi.Component", "GetExtents", "(u)", (0,))

    def described(self, states, window):
        return {"name": self.name(), "role": self.ask("org.a11y.atspi.Accessible", "GetRoleName"),
                "checked": bool(states >> CHECKED & 1), "usable": bool(states >> SENSITIVE & 1),
                "place": self.place(), "window": window}


def collect(element, window, controls):
    try:
        states = element.states()
        if states >> SHOWING & 1:
            controls.append(element.described(states, window))
        for child in element.children():
            collect(child, window, controls)
    except GLib.Error:
        pass  # it went while it was looked at


def main():
    Object.bus = connect()
    controls = []
    for application in Object(REGISTRY).children():
        try:
            if application.name() == sys.argv[1]:
                for window in application.children():
                    collect(window, window.place(), controls)
        except GLib.Error:
            pass
    print(json.dumps(controls))


if __name__ == "__main__":
    main()
