"""Real players for a private session, and Velmor's settings in it."""

import json
import os


def tagged(desktop, name, seconds=60, **tags):
    """A file of quiet sound with these tags."""
    tone = ("-f", "lavfi", "-i", f"sine=frequency=220:duration={seconds}")
    return converted(desktop, name, *tone, **tags)


def converted(desktop, name, *source, **tags):
    """A file of what ffmpeg makes of these options, with these tags."""
    path = os.path.join(desktop.root, name)
    options = [item for tag in tags.items() for item in ("-metadata", "%s=%s" % tag)]
    made = desktop.run(["ffmpeg", "-loglevel", "error", *source, *options, path])
    assert made.returncode == 0, made.stderr
    return path


def mpv(desktop, path, *options, announced=True):
    """Plays a file without an end and without a window; when announced, the session bus knows."""
    script = ["--script=/etc/mpv/scripts/mpris.so"] if announced else []
    return desktop.start(
        ["mpv", "--no-config", "--no-video", "--no-terminal", "--ao=null", "--loop-file=inf",
         *script, *options, path])


def playSong(desktop, **tags):
    """Plays a song of these tags and gives the track that Velmor then names."""
    mpv(desktop, tagged(desktop, "song.flac", **tags))
    return desktop.waitForTrack(title=tags["title"])


def configure(desktop, **changes):
    """Writes Velmor's settings."""
    config = {"version": 8, "tinkerApiKey": "", "openaiApiKey": "", "aiModel": "m",
              "recommendationCount": 3, "bpmTolerance": 10, "autoSuggestTracks": False,
              "theme": "light", "window": {"x": -1, "y": -1, "width": 507, "height": 651}}
    folder = os.path.join(desktop.home, ".config", "Velmor")
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "config.json"), "w", encoding="utf-8") as file:
        json.dump({**config, **changes}, file)
    return {**config, **changes}
