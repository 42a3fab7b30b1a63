"""A window laid out like a DJ program's screen: rekordbox_window.py LAYOUT-FILE STATE-FILE

The layout gives each text its place; a text of the form {deck.field} shows what the state file
says of that deck. The clocks of decks that play go on by themselves. The state that is on screen
stands in a second file, STATE-FILE.shown.
"""

import json
import sys
import time

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402

layoutFile, stateFile = sys.argv[1:]
started = time.monotonic()


def load(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def clock(seconds):
    return f"{seconds // 60}:{seconds % 60:02}"


def shown(deck):
    """What a deck's place shows now. The state gives the times at which the window came up."""
    played = int(time.monotonic() - started) if deck["plays"] else 0
    elapsed = deck["elapsed"] + played
    return {**deck, "elapsed": clock(elapsed), "remaining": "-" + clock(deck["length"] - elapsed)}


def update():
    state = load(stateFile)
    decks = {name: shown(deck) for name, deck in state.items()}
    for label, text in labels:
        if text.startswith("{"):
            deck, field = text.strip("{}").split(".")
            label.set_text(decks[deck][field])
    with open(stateFile + ".shown", "w", encoding="utf-8") as file:
        json.dump(state, file)
    return True


layout = load(layoutFile)
window = Gtk.Window(title="rekordbox")
window.set_default_size(*layout["window"])
window.connect("destroy", Gtk.main_quit)
place = Gtk.Fixed()
window.add(place)
labels = []
for text, x, y, width, height in layout["texts"]:
    label = Gtk.Label(label=text, xalign=0)
    label.set_size_request(width, height)
    place.put(label, x, y)
    labels.append((label, text))
update()
window.show_all()
# What a closed panel still holds is in the tree, too, but not to be seen.
for text, x, y, width, height in layout["hidden"]:
    label = Gtk.Label(label=text)
    label.set_size_request(width, height)
    place.put(label, x, y)
GLib.timeout_add(200, update)
Gtk.main()
