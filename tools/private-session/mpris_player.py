"""A media player as the session bus sees one: mpris_player.py SUFFIX IDENTITY STATE-FILE

The file holds {"status": ..., "metadata": {"xesam:title": ...}} and is read at each question.
"""

import json
import sys

from gi.repository import Gio, GLib

INTERFACES = """<node>
  <interface name="org.mpris.MediaPlayer2">
    <property name="Identity" type="s" access="read"/>
  </interface>
  <interface name="org.mpris.MediaPlayer2.Player">
    <property name="PlaybackStatus" type="s" access="read"/>
    <property name="Metadata" type="a{sv}" access="read"/>
    <property name="Rate" type="d" access="read"/>
  </interface>
</node>"""

suffix, identity, stateFile = sys.argv[1:]


def metadata(state):
    return {key: GLib.Variant("as" if isinstance(value, list) else "s", value)
            for key, value in state["metadata"].items()}


def readProperty(_connection, _sender, _path, _interface, name):
    with open(stateFile, encoding="utf-8") as file:
        state = json.load(file)
    return {"Identity": lambda: GLib.Variant("s", identity),
            "PlaybackStatus": lambda: GLib.Variant("s", state["status"]),
            "Metadata": lambda: GLib.Variant("a{sv}", metadata(state)),
            "Rate": lambda: GLib.Variant("d", 1.0)}[name]()


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
for interface in Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces:
    bus.register_object("/org/mpris/MediaPlayer2", interface, None, readProperty, None)
Gio.bus_own_name_on_connection(bus, "org.mpris.MediaPlayer2." + suffix,
                               Gio.BusNameOwnerFlags.NONE, None, None)
GLib.MainLoop().run()
