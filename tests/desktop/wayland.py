"""GNOME's compositor on Wayland, without a screen: Velmor runs in it by XWayland."""

import glob
import os

from gi.repository import Gio, GLib

from session import waitUntil
from velmor_window import SCREEN, VelmorDesktop

LEFT_BUTTON = 0x110


class WaylandDesktop(VelmorDesktop):
    """Its mouse is the compositor's own: XWayland lets no other program move the pointer."""

    def _startDisplay(self):
        self.windowManager = self.start(
            ["mutter", "--wayland", "--headless", "--virtual-monitor",
             "{}x{}".format(*SCREEN), "--wayland-display", "velmor-wayland"], log="manager.log")
        self.environment["DISPLAY"] = waitUntil(self._number, "XWayland is there")
        [authority] = waitUntil(
            lambda: glob.glob(os.path.join(self.runtime, ".mutter-Xwaylandauth.*")), "its key")
        # The driver asks the server, too.
        self.environment["XAUTHORITY"] = os.environ["XAUTHORITY"] = authority
        asked = ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]
        waitUntil(lambda: "window id" in self.run(asked).stdout, "XWayland answers")
        self._takeMouse()

    def _number(self):
        """The first display that the compositor has taken: its lock names the process. The second
        is for its own services."""
        for path in sorted(glob.glob("/tmp/.X*-lock")):
            with open(path, encoding="utf-8") as lock:
                if lock.read().strip() == str(self.windowManager.pid):
                    return ":" + path.removeprefix("/tmp/.X").removesuffix("-lock")
        return None

    def _takeMouse(self):
        self.bus = Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
            | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        self.remote = "/org/gnome/Mutter/RemoteDesktop"
        self.remote = self._ask("org.gnome.Mutter.RemoteDesktop", "CreateSession").unpack()[0]
        self._mouse("Start")
        self._moveBy(-3000, -3000)
        self.mouse = (0, 0)

    def _mouse(self, method, arguments=None):
        self._ask("org.gnome.Mutter.RemoteDesktop.Session", method, arguments)

    def _ask(self, interface, method, arguments=None):
        return self.bus.call_sync("org.gnome.Mutter.RemoteDesktop", self.remote, interface, method,
                                  arguments, None, Gio.DBusCallFlags.NONE, 10000, None)

    def pictured(self):
        # XWayland has no picture of the whole screen.
        return str(self.client().id)

    def moveTo(self, x, y):
        # Places are given from where the mouse is: the compositor takes others for shared screens.
        self._moveBy(x - self.mouse[0], y - self.mouse[1])
        self.mouse = (x, y)

    def _moveBy(self, right, down):
        step = GLib.Variant("(dd)", (float(right), float(down)))
        self._mouse("NotifyPointerMotionRelative", step)

    def flick(self, place, right, down):
        x, y = self.onScreen(place)
        self.moveTo(x, y)
        self.button(1, True)
        self.moveTo(x + 1, y + 1)
        self.moveTo(x + right, y + down)
        self.button(1, False)

    def button(self, number, down):
        self._mouse("NotifyPointerButton", GLib.Variant("(ib)", (LEFT_BUTTON + number - 1, down)))
