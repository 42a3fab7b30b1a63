"""A file manager that only notes what it is asked to show: file_manager.py NOTES"""

import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402 pylint: disable=wrong-import-position

NAME = "org.freedesktop.FileManager1"
INTERFACE = Gio.DBusNodeInfo.new_for_xml(f"""<node><interface name="{NAME}"><method name="ShowItems">
<arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>""")


def called(_bus, _sender, _path, _interface, _method, arguments, invocation):
    with open(sys.argv[1], "a", encoding="utf-8") as notes:
        notes.write("\n".join(arguments.unpack()[0]) + "\n")
    invocation.return_value(None)


def connected(bus, _name):
    bus.register_object("/org/freedesktop/FileManager1", INTERFACE.interfaces[0], called)


Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE, connected)
GLib.MainLoop().run()
