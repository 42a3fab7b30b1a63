"""The page in its window: what it hears of real players, and what it may not do."""

import unittest

from page_probe import Probe
from velmor_window import FULL, VelmorDesktop

from model_provider import ModelProvider
from players import configure, mpv, tagged
from session import waitUntil

# Each leads out of the page or wants more than it gets; what answers is told.
ESCAPES = """
  addEventListener('load', () => {
    open('about:blank');
    const link = document.createElement('a');
    link.href = 'file:///etc/hostname';
    document.body.append(link);
    link.click();
    link.target = '_blank';
    link.click();
    link.download = 'taken';
    link.click();
    location.reload();
    setTimeout(() => { location.hash = 'here'; location.reload(); }, 500);
    const foreign = document.createElement('script');
    foreign.src = 'file:///etc/hostname';
    foreign.onload = () => tell('foreign script', null);
    document.body.append(foreign);
    const frame = document.createElement('iframe');
    frame.src = 'file:///etc/hostname';
    document.body.append(frame);
    location.href = 'file:///etc/passwd';
    navigator.geolocation?.getCurrentPosition(() => tell('position', null));
    tell('handlers', Object.keys(window.webkit.messageHandlers));
    tell('drag', [typeof window.velmorDragged,
      typeof window.webkit.messageHandlers.velmorBackground]);
    setTimeout(() => tell('still here', location.pathname.split('/').pop()), 3000);
  });
"""

class PageTest(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(VelmorDesktop())

    def open(self, extra="", **config):
        probe = self.enterContext(Probe(extra))
        self.desktop.program = probe.addTo(self.desktop.root)
        configure(self.desktop, **config)
        self.desktop.open()
        return probe

    def testHearsEveryTrackInOrder(self):
        desktop = self.desktop
        provider = desktop.enter(ModelProvider())
        desktop.environment.update(provider.environment)
        probe = self.open(autoSuggestTracks=True)
        titles = ("First", "Second")
        songs = [tagged(desktop, title + ".flac", title=title, artist="Band") for title in titles]
        socket = desktop.root + "/mpv"
        player = mpv(desktop, songs[0], "--input-ipc-server=" + socket)

        def command(*words):
            desktop.run(["python3", "-c", "import json,socket,sys\n"
                         "s=socket.socket(socket.AF_UNIX);s.connect(sys.argv[1])\n"
                         "s.sendall((json.dumps({'command':sys.argv[2:]})+'\\n').encode())\n"
                         "s.recv(1)", socket, *words])

        expected = []
        for act, *names in (
                (lambda: None, "track-changed", "suggestions-ready"),
                (lambda: command("loadfile", songs[1]), "track-changed", "suggestions-ready"),
                (lambda: command("set", "pause", "yes"), "track-stopped"),
                (lambda: command("set", "pause", "no"), "track-changed", "suggestions-ready"),
                (lambda: desktop.stop(player), "track-stopped")):
            act()
            expected += names
            waitUntil(lambda: probe.names() == expected,
                      lambda: f"{expected}; heard {probe.names()}")
        changes = [detail["song"] for _, detail in probe.events("track-changed")]
        self.assertEqual(changes, ["First", "Second", "Second"])
        answers = [detail["currentTrack"]["song"] for _, detail in
                   probe.events("suggestions-ready")]
        self.assertEqual(answers, changes)

    def testTellsTheModeAndAbout(self):
        probe = self.open()
        self.desktop.shrink()
        self.desktop.click((40, 40))
        self.desktop.waitForSize(FULL)
        waitUntil(lambda: probe.events("compact-mode") == [("compact-mode", True),
                                                           ("compact-mode", False)],
                  "both modes were told")
        # The menu comes with the other button; its first entry is About.
        self.desktop.click((250, 560), number=3)
        self.desktop.screenshot("menu")
        self.desktop.key("Down", "Return")
        waitUntil(lambda: probe.names("show-about"), "About was chosen")
        self.desktop.screenshot("about")

    def testMayNotLeaveThePage(self):
        probe = self.open(ESCAPES)
        waitUntil(lambda: "still here" in probe.names(), lambda: f"heard {probe.names()}")
        told = dict(probe.events())
        self.assertEqual(told["still here"], "index.html")
        self.assertEqual(told["drag"], ["undefined", "undefined"])
        self.assertNotIn("position", told)
        self.assertNotIn("foreign script", told)
        self.assertEqual(probe.names().count("handlers"), 1, "the page is loaded once")


if __name__ == "__main__":
    unittest.main()
