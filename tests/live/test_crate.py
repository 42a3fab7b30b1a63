"""The DJ's own music: read while the real Mixxx scans it, and while files come and go."""

import json
import os
import queue
import re
import shutil
import subprocess
import sys
import threading
import time
import unittest

from mixxx import Mixxx
from players import tagged
from session import Session, builtVelmor, waitUntil

FILE_MANAGER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "file_manager.py")
FOLDERS, FILES = 240, 4
SCAN = 300
"""Seconds."""


class Bridge:
    """A running Velmor, asked line by line."""

    def __init__(self, desktop, **environment):
        self.process = subprocess.Popen(
            [builtVelmor(), "bridge"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
            env={**desktop.environment, **environment})
        desktop.processes.append(self.process)
        self.answers, self.events = queue.Queue(), []
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            if match := re.match(r'window.__velmorEmit\("velmor:crate-changed", (.*)\);', line):
                self.events.append(json.loads(match[1]))
            elif match := re.match(r'window.__velmor\w+\("\w+", (.*)\);', line):
                self.answers.put(json.loads(match[1]))

    def call(self, method, *args):
        self.process.stdin.write(json.dumps({"id": "1", "method": method, "args": args}) + "\n")
        self.process.stdin.flush()
        return self.answers.get(timeout=60)


class ScannedMixxx(Mixxx):
    """Its first start scans many files, which somebody looks on."""

    def __init__(self, desktop, lookOn):
        self.lookOn, self.folder = lookOn, os.path.join(desktop.home, "Music")
        super().__init__(desktop, {})

    def _fillLibrary(self):
        tone = tagged(self.desktop, "tone.mp3", 1)
        for number in range(FOLDERS):
            os.makedirs(os.path.join(self.folder, f"Artist {number}"))
            for title in range(FILES):
                name = f"Artist {number} - Title {title}.mp3"
                self.files[name] = os.path.join(self.folder, f"Artist {number}", name)
                shutil.copy(tone, self.files[name])
        super()._fillLibrary()

    def _tracksInLibrary(self):
        self.lookOn()
        return super()._tracksInLibrary()


class CrateTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Session(sound=True, accessibility=True, alone=True))

    def testReadsWhileMixxxScans(self):
        nothing = os.path.join(self.desktop.root, "nothing")
        os.makedirs(nothing)
        bridge = Bridge(self.desktop, VELMOR_CRATE=nothing)
        seen, waits = [], []

        def lookOn():
            begin = time.monotonic()
            seen.append(bridge.call("GetCrate")["tracks"])
            waits.append(time.monotonic() - begin)

        ScannedMixxx(self.desktop, lookOn)
        waitUntil(lambda: bridge.call("GetCrate")["tracks"] == FOLDERS * FILES,
                  lambda: f"all tracks are known: {bridge.call('GetCrate')}", SCAN)
        self.assertEqual(bridge.call("GetCrate")["skipped"], 0)
        self.assertTrue(all(0 <= event["progress"] <= 1 for event in bridge.events))
        print(f"{len(seen)} looks, the longest wait {max(waits):.3f} s, seen {sorted(set(seen))}, "
              f"{len(bridge.events)} events")

    def testNoticesFilesThatComeAndGo(self):
        music = os.path.join(self.desktop.root, "Crate")
        os.makedirs(os.path.join(music, "new"))
        tagged(self.desktop, os.path.join(music, "one.mp3"), 1, title="One", artist="A")
        bridge = Bridge(self.desktop, VELMOR_CRATE=music)
        names = [{"song": "One", "artist": "A"}, {"song": "Two", "artist": "B"}]

        def known():
            return [entry and entry["uri"] for entry in bridge.call("LookUpInCrate", names)]

        first = "file://" + music + "/one.mp3"
        self.assertEqual(known(), [first, None])
        two = tagged(self.desktop, os.path.join(music, "new", "two.mp3"), 1, title="Two",
                     artist="B")
        waitUntil(lambda: known() == [first, "file://" + two], known)
        os.remove(two)
        waitUntil(lambda: known() == [first, None], known)
        self.assertEqual(bridge.call("ShowInFileManager", "file://" + two),
                         "That file is not in your crate.")

    def testShowsAFileInTheFileManager(self):
        music = os.path.join(self.desktop.root, "Crate")
        os.makedirs(music)
        tagged(self.desktop, os.path.join(music, "ü 1.mp3"), 1, title="One", artist="A")
        notes = os.path.join(self.desktop.root, "shown")
        self.desktop.start([sys.executable, FILE_MANAGER, notes])
        waitUntil(lambda: "org.freedesktop.FileManager1" in self.desktop.busNames(),
                  "the file manager runs")
        bridge = Bridge(self.desktop, VELMOR_CRATE=music)
        uri = bridge.call("LookUpInCrate", [{"song": "One", "artist": "A"}])[0]["uri"]
        self.assertTrue(uri.endswith("/%C3%BC%201.mp3"), uri)
        self.assertIsNone(bridge.call("ShowInFileManager", uri))
        waitUntil(lambda: os.path.exists(notes), "the file is shown")
        with open(notes, encoding="utf-8") as file:
            self.assertEqual(file.read(), uri + "\n")


if __name__ == "__main__":
    unittest.main()
