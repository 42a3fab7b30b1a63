"""Velmor's window as another process sees it: through the X server, with a hand on the mouse."""

import json
import os
import shutil
import signal
import subprocess
import time

from Xlib import X, Xatom, Xutil, display, error, protocol
from Xlib.ext import xtest

from players import configure
from session import Session, descendants, waitUntil
from standins import startPlayer, writeState

MANAGERS = {
    "openbox": ("openbox", "--sm-disable"),
    "xfwm4": ("xfwm4", "--sm-client-disable", "--compositor=off"),
    "metacity": ("metacity", "--sm-disable"),
    "marco": ("marco", "--sm-disable", "--no-composite"),
    "mutter": ("mutter", "--x11", "--sm-disable"),
    "muffin": ("muffin", "--x11", "--sm-disable"),
    "kwin_x11": ("kwin_x11",),
    "icewm": ("icewm",),
    "jwm": ("jwm",),
    "fluxbox": ("fluxbox",),
    "i3": ("i3",),
    "none": (),
    # GNOME's compositor, started by a class of its own.
    "wayland": (),
}
SCREEN = (1440, 900)
FULL = (507, 651)
SQUARE = (82, 82)
CLOSE, MINIMISE = (18, 20), (41, 20)
# A place in the page's bar that no control takes.
BACKGROUND = (200, 4)
# The page's ground in the theme that it begins with, blue first.
LIGHT = bytes([0xF8, 0xF5, 0xF5])
# The ground of other windows, likewise.
OTHER = bytes([0x99, 0x66, 0x33])


class VelmorDesktop(Session):
    """A private desktop with the window in it; `program` stands in for the built one."""

    def __init__(self, manager="openbox", program=None, **options):
        super().__init__(manager=MANAGERS[manager], **options)
        self.program = os.path.abspath(program or os.environ["VELMOR"])
        self.x = None

    def __enter__(self):
        super().__enter__()
        self.x = display.Display(self.environment["DISPLAY"])
        self.rootWindow = self.x.screen().root
        return self

    def __exit__(self, *reason):
        if self.x:
            self.x.close()
        super().__exit__(*reason)

    # The program

    def open(self, *origin):
        """Starts the window, with this saved place if any, and waits until it is there."""
        if origin:
            place = dict(zip(("x", "y", "width", "height"), (*origin, *FULL)))
            configure(self, window=place)
        process = self.start([self.program], log="velmor.log")
        waitUntil(self.frame, "the window is on the screen")
        waitUntil(lambda: self.pixel(*BACKGROUND) == LIGHT, "the page shows")
        return process

    def saved(self):
        with open(os.path.join(self.home, ".config", "Velmor", "config.json"),
                  encoding="utf-8") as file:
            window = json.load(file)["window"]
        return tuple(window[name] for name in ("x", "y", "width", "height"))

    def ended(self, process, seconds=30):
        waitUntil(lambda: process.poll() is not None, "the program has ended", seconds)
        return process.returncode

    def children(self, process):
        """The names of the program's children, by their identifiers."""
        names = {}
        for child in descendants(process.pid):
            try:
                with open(f"/proc/{child}/comm", encoding="utf-8") as name:
                    names[child] = name.read().strip()
            except OSError:
                continue
        return names

    def helpers(self, process, name):
        """The identifiers of its children of that name."""
        return [child for child, known in self.children(process).items() if known == name]

    def listens(self, process):
        return "ffmpeg" in self.children(process).values()

    def ask(self):
        """Presses the button that asks for suggestions."""
        self.click((250, 137))

    def lose(self, program):
        """Kills one of the programs that make the desktop."""
        [process] = [one for one in self.processes if one.args[0] == program]
        process.kill()
        process.wait()
        if program == "Xvfb":
            self.x = None

    def shrink(self):
        self.click(MINIMISE)
        self.waitForSize(SQUARE)

    # What the X server says

    def client(self):
        """The window, None while the window manager does not list it; without a window manager,
        while it is not on the screen."""
        for window in self.clients():
            if self._text(window, "_NET_WM_NAME") == "Velmor":
                return window
        return None

    def clients(self):
        if not self.manager:
            return [window for window in self.rootWindow.query_tree().children
                    if self._isShown(window)]
        numbers = self._property(self.rootWindow, "_NET_CLIENT_LIST") or []
        return [self.x.create_resource_object("window", number) for number in numbers]

    def alerts(self):
        """The program's other windows."""
        main = self.client()
        return [window for window in self.clients()
                if window.id != main.id and self._text(window, "_NET_WM_NAME") == "Velmor"]

    @staticmethod
    def _isShown(window):
        try:
            attributes = window.get_attributes()
        except error.BadWindow:
            return False
        # Tooltips and menus are not what a window manager would list.
        return attributes.map_state == X.IsViewable and not attributes.override_redirect

    def frame(self):
        """Origin at the bottom left, as Velmor counts; None while it is not on the screen."""
        window = self.client()
        if not window or window.get_attributes().map_state != X.IsViewable:
            return None
        size = window.get_geometry()
        place = window.translate_coords(self.rootWindow, 0, 0)
        return (-place.x, SCREEN[1] + place.y - size.height, size.width, size.height)

    def isCentred(self):
        """Whether it is in the middle of what panels leave free, which may lie between pixels."""
        area = self._property(self.rootWindow, "_NET_WORKAREA") or (0, 0, *SCREEN)
        left, top, width, height = area[:4]
        bottom = SCREEN[1] - top - height
        x, y, *size = self.frame() or (0, 0, 0, 0)
        return (tuple(size) == FULL and abs(x - left - (width - FULL[0]) / 2) < 1
                and abs(y - bottom - (height - FULL[1]) / 2) < 1)

    def states(self, window=None):
        window = window or self.client()
        names = self._property(window, "_NET_WM_STATE") or []
        states = {self.x.get_atom_name(atom).removeprefix("_NET_WM_STATE_") for atom in names}
        # Some say it so, some as a state.
        everywhere = self._property(window, "_NET_WM_DESKTOP") == [0xFFFFFFFF]
        return states | ({"STICKY"} if everywhere else set())

    def isSeen(self):
        """Whether it is drawn above the other windows."""
        left, top = self.onScreen((4, 4))
        image = self.rootWindow.get_image(left, top, 1, 1, X.ZPixmap, 0xFFFFFFFF)
        return bytes(image.data[:3]) != OTHER

    def active(self):
        return self._property(self.rootWindow, "_NET_ACTIVE_WINDOW")[0]

    def shows(self, expected):
        """Whether the window has this frame and is painted, with its buttons: it takes clicks."""
        # Of what hangs over the screen's edge there is no picture.
        width = min(expected[2], SCREEN[0] - expected[0])
        if self.frame() != expected or min(self.pixel(width - 3, expected[3] - 3)) < 0xF0:
            return False
        return expected[2:] != FULL or max(self.pixel(*MINIMISE)) < 0xD0

    def waitForFrame(self, expected):
        """The frame has come and stays: read at every moment for a while, nothing else follows."""
        waitUntil(lambda: self.shows(expected), lambda: f"{expected}; it is {self.frame()}")
        until = time.monotonic() + 0.5
        while time.monotonic() < until:
            assert self.frame() == expected, f"{expected} has become {self.frame()}"
            time.sleep(0.02)

    def waitForSize(self, size):
        waitUntil(lambda: (frame := self.frame()) and frame[2:] == size and self.shows(frame),
                  lambda: f"{size}; it is {self.frame()}")

    def pixel(self, x, y):
        """The colour at a place of the window."""
        image = self.client().get_image(x, y, 1, 1, X.ZPixmap, 0xFFFFFF)
        return bytes(image.data[:3])

    def screenshot(self, name):
        """Kept in the folder that VELMOR_SHOTS names, for looking at."""
        if folder := os.environ.get("VELMOR_SHOTS"):
            subprocess.run(["import", "-window", self.pictured(), os.path.join(folder, name + ".png")],
                           env={**os.environ, **self.environment}, check=True)

    def pictured(self):
        return "root"

    def close(self):
        """As the window manager closes a window."""
        event = protocol.event.ClientMessage(
            window=self.client(), client_type=self.x.get_atom("_NET_CLOSE_WINDOW"),
            data=(32, [X.CurrentTime, 2, 0, 0, 0]))
        mask = X.SubstructureRedirectMask | X.SubstructureNotifyMask
        self.rootWindow.send_event(event, event_mask=mask)
        self.x.sync()

    # The mouse

    def moveTo(self, x, y):
        xtest.fake_input(self.x, X.MotionNotify, x=x, y=y)
        self.x.sync()

    def button(self, number, down):
        xtest.fake_input(self.x, X.ButtonPress if down else X.ButtonRelease, number)
        self.x.sync()

    def onScreen(self, place):
        """A place of the window in the X server's coordinates."""
        x, y, _, height = self.frame()
        return x + place[0], SCREEN[1] - y - height + place[1]

    def click(self, place, number=1):
        self.moveTo(*self.onScreen(place))
        self.button(number, True)
        self.button(number, False)

    def drag(self, place, right, down, steps=10):
        x, y = self.onScreen(place)
        self.moveTo(x, y)
        self.button(1, True)
        # A hand takes its time, too, until it moves.
        time.sleep(0.3)
        for step in range(1, steps + 1):
            self.moveTo(x + right * step // steps, y + down * step // steps)
            time.sleep(0.02)
        self.button(1, False)

    def flick(self, place, right, down):
        """A press, the first small movement and a large one before anybody can answer."""
        x, y = self.onScreen(place)
        self.moveTo(x, y)
        for kind, detail, *to in ((X.ButtonPress, 1, x, y), (X.MotionNotify, 0, x + 1, y + 1),
                                  (X.MotionNotify, 0, x + right, y + down),
                                  (X.ButtonRelease, 1, x + right, y + down)):
            xtest.fake_input(self.x, kind, detail, x=to[0], y=to[1])
        self.x.sync()

    def key(self, *keys):
        self.tool("key", *keys)

    def tool(self, *arguments):
        subprocess.run(["xdotool", *arguments], env={**os.environ, **self.environment}, check=True)

    # Other windows

    def otherWindow(self, state=None):
        """Another application's window over most of the screen, if wanted in one of the states that
        window managers know."""
        root = self.x.screen()
        window = root.root.create_window(0, 0, 1400, 850, 0, root.root_depth,
                                         background_pixel=int.from_bytes(OTHER, "little"))
        window.set_wm_name("other")
        window.set_wm_hints(flags=Xutil.InputHint, input=1)
        if state:
            window.change_property(self.x.get_atom("_NET_WM_STATE"), Xatom.ATOM, 32,
                                   [self.x.get_atom("_NET_WM_STATE_" + state)])
        window.map()
        self.x.sync()
        waitUntil(lambda: window in self.clients(), "the other window is there")
        return window

    def activate(self, window):
        self.tool("windowactivate", "--sync", str(window.id))

    def _property(self, window, name):
        value = window.get_full_property(self.x.get_atom(name), X.AnyPropertyType)
        return list(value.value) if value else None

    def _text(self, window, name):
        """None, too, for a window that has just gone."""
        try:
            value = window.get_full_property(self.x.get_atom(name), self.x.get_atom("UTF8_STRING"))
        except error.BadWindow:
            return None
        return value.value.decode() if value else None


def hungPlayer(desktop):
    """A player on the session bus that answers nothing: each look for the track waits for it."""
    path = writeState(desktop, "player", {"status": "Playing", "metadata": {}})
    startPlayer(desktop, "Hung", path).send_signal(signal.SIGSTOP)


def withScript(root, script, program=None, allowed=""):
    """A copy of the program whose page runs one script more; `allowed` goes into the page's
    security policy. Gives the copy's path."""
    program = os.path.abspath(program or os.environ["VELMOR"])
    folder = os.path.join(root, "copy")
    shutil.copytree(os.path.join(os.path.dirname(program), "share"), os.path.join(folder, "share"))
    web = os.path.join(folder, "share", "velmor", "Web")
    with open(os.path.join(web, "page.js"), "a", encoding="utf-8") as file:
        file.write(script)
    index = os.path.join(web, "index.html")
    with open(index, encoding="utf-8") as file:
        text = file.read().replace("default-src 'none'", "default-src 'none'; " + allowed)
    with open(index, "w", encoding="utf-8") as file:
        file.write(text)
    return shutil.copy2(program, folder)
