"""A desktop's tray for tools/bench-app: prints, for each icon that registers, when it did (time.perf_counter).

Runs on the session bus of its environment, by the system's own Python, whose packages these are.
"""
import time

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.kde.StatusNotifierWatcher"
# Qt looks here for the property, which the library would leave out.
DESCRIPTION = f"""<node><interface name="{NAME}">
<method name="RegisterStatusNotifierItem"><arg name="item" type="s" direction="in"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
</interface></node>"""


class Watcher(dbus.service.Object):
    @dbus.service.method(NAME, in_signature="s")
    def RegisterStatusNotifierItem(self, _item):
        print(time.perf_counter(), flush=True)

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, _interface, name):
        return name == "IsStatusNotifierHostRegistered"

    @dbus.service.method(dbus.INTROSPECTABLE_IFACE, out_signature="s")
    def Introspect(self):
        return DESCRIPTION


DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
watcher = Watcher(bus, "/StatusNotifierWatcher")
owned = dbus.service.BusName(NAME, bus)
print("ready", flush=True)
GLib.MainLoop().run()
