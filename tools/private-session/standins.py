"""Stand-ins for programs that do not run here: processes of their names, and what they publish."""

import json
import os

from session import waitUntil

PYTHON = "/usr/bin/python3"
PLAYER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "mpris_player.py")


def startAs(desktop, name, program, *arguments, **options):
    """Runs a program so that the process goes by this name, blanks and all."""
    folder = os.path.join(desktop.root, "bin")
    os.makedirs(folder, exist_ok=True)
    path = os.path.join(folder, name)
    if not os.path.lexists(path):
        os.symlink(program, path)
    return desktop.start([path, *arguments], **options)


def runScriptAs(desktop, name, script, *arguments):
    """Runs a Python script so that the process goes by this name."""
    return startAs(desktop, name, PYTHON, script, *arguments)


def idleAs(desktop, name):
    """A process that does nothing but bear this name."""
    return startAs(desktop, name, "/usr/bin/sleep", "3600")


def writeState(desktop, name, state):
    """Says what a stand-in shows; it reads the file at this path anew whenever it is asked."""
    path = os.path.join(desktop.root, name + ".json")
    with open(path + ".new", "w", encoding="utf-8") as file:
        json.dump(state, file)
    os.replace(path + ".new", path)
    return path


def startPlayer(desktop, name, path):
    """A media player of this name on the session bus that does what the file at `path` says."""
    player = runScriptAs(desktop, name, PLAYER, name.lower(), name, path)
    waitUntil(lambda: "mpris.MediaPlayer2." + name.lower() in desktop.busNames(),
              name + " is on the bus")
    return player
