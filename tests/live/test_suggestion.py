"""A whole suggestion: a real player, real HTTP, the program as a user starts it."""

import json
import os
import signal
import unittest

from players import Provider, configure, mpv, tagged
from session import Session, waitUntil

PAGE = """<!doctype html><title>Radio</title><audio id=a src=song.wav loop></audio><script>
navigator.mediaSession.metadata = new MediaMetadata(
  {title: 'Über “Song” <b>', artist: 'Chromium Artist', album: 'Web Album'});
a.play();
</script>"""

NO_SESSION = ("No active media session found. Start playback in a supported DJ app, "
              "then try again.\n")


class SuggestionTest(unittest.TestCase):
    def testNamesThePlayingTrackAndRanksWhatFollows(self):
        with Session(display=False) as desktop:
            provider = Provider(desktop)
            mpv(desktop, tagged(desktop, "song.flac", title="It's \"Ænima\" 東京",
                                artist="Sigur Rós", album="Left | Right"))
            track = desktop.waitForTrack(title="It's \"Ænima\" 東京")
            self.assertEqual(
                (track["artist"], track["album"], track["source"], track["detection"]),
                ("Sigur Rós", "Left | Right", "mpv", "macOS media session"))
            for model, name in (("thinkingmachines/Inkling-Small", "Tinker"), ("gpt-5", "OpenAI")):
                for count in (3, 10):
                    configure(desktop, aiModel=model, recommendationCount=count)
                    ran = desktop.velmor("suggest", "--json", environment=provider.environment)
                    self.assertEqual((ran.returncode, ran.stderr), (0, ""))
                    result = json.loads(ran.stdout)
                    self.assertEqual(len(result["recommendations"]), count)
                    self.assertEqual(result["currentTrack"]["song"], track["title"])
                    self.assertEqual(result["source"], "macOS Media Control + " + name)
            # The provider has refused every request that was not to the letter.
            requests = provider.requests()
            self.assertEqual(len(requests), 4)
            self.assertIn('- Song: It\'s "Ænima" 東京\n- Artist: Sigur Rós\n',
                          requests[0]["body"]["messages"][0]["content"][0]["text"])
            self.assertEqual(set(requests[3]["body"]), {
                "model", "instructions", "input", "tools", "tool_choice", "max_output_tokens"})

    def testAPausedPlayerIsNoSession(self):
        with Session(display=False) as desktop:
            player = mpv(desktop, tagged(desktop, "song.flac", title="T", artist="A"))
            desktop.waitForTrack(title="T")
            desktop.run(["gdbus", "call", "--session", "--dest", "org.mpris.MediaPlayer2.mpv",
                         "--object-path", "/org/mpris/MediaPlayer2", "--method",
                         "org.mpris.MediaPlayer2.Player.Pause"])
            waitUntil(lambda: desktop.nowPlaying() is None, "nothing plays")
            self.assertEqual(desktop.velmor("now").stderr, NO_SESSION)
            self.assertIsNone(player.poll())

    def testAHungPlayerHidesNothing(self):
        with Session(display=False) as desktop:
            hung = mpv(desktop, tagged(desktop, "hung.flac", title="Hung", artist="A"))
            desktop.waitForTrack(title="Hung")
            os.kill(hung.pid, signal.SIGSTOP)
            mpv(desktop, tagged(desktop, "alive.flac", title="Alive", artist="B"))
            desktop.waitForTrack(title="Alive")

    def testNamesWhatABrowserPlays(self):
        with Session() as desktop:
            tagged(desktop, "song.wav")
            page = os.path.join(desktop.root, "page.html")
            with open(page, "w", encoding="utf-8") as file:
                file.write(PAGE)
            desktop.start(["chromium", "--no-sandbox", "--disable-gpu", "--disable-quic",
                           "--no-first-run", "--disable-background-networking",
                           "--disable-component-update", "--disable-sync",
                           "--autoplay-policy=no-user-gesture-required",
                           "--user-data-dir=" + os.path.join(desktop.root, "profile"),
                           "file://" + page])
            track = desktop.waitForTrack(title="Über “Song” <b>")
            self.assertEqual((track["artist"], track["album"], track["source"]),
                             ("Chromium Artist", "Web Album", "Chrome"))

    def testTellsInASentenceWhatWentWrong(self):
        with Session(display=False) as desktop:
            provider = Provider(desktop, "--key", "another key")
            for arguments, environment, expected in (
                    (["now"], {}, NO_SESSION),
                    (["suggest"], {}, "Tinker API key is required for recommendations\n"),
                    (["suggest"], provider.environment, NO_SESSION)):
                ran = desktop.velmor(*arguments, environment=environment)
                self.assertEqual((ran.returncode, ran.stdout, ran.stderr), (1, "", expected))
            mpv(desktop, tagged(desktop, "song.flac", title="T", artist="A"))
            desktop.waitForTrack(title="T")
            for url, expected in (
                    (provider.environment["VELMOR_TINKER_URL"],
                     "request failed with status 401\n"),
                    ("http://127.0.0.1:1/", "The server could not be reached.\n"),
                    ("ftp://127.0.0.1/x", None), ("127.0.0.1", None)):
                ran = desktop.velmor("suggest", environment={
                    **provider.environment, "VELMOR_TINKER_URL": url})
                self.assertEqual(ran.returncode, 1)
                self.assertNotIn("local-demo-key", ran.stderr + ran.stdout)
                if expected:
                    self.assertEqual(ran.stderr, expected)
                else:
                    self.assertIn("http", ran.stderr)

    def testUnusableCommandLines(self):
        with Session(display=False, bus=False) as desktop:
            for arguments in (["--unknown"], ["now", "--xml"], ["bridge", "x"]):
                ran = desktop.velmor(*arguments)
                self.assertEqual(ran.returncode, 2)
                self.assertTrue(ran.stderr.startswith("usage: velmor "))
            self.assertRegex(desktop.velmor("--version").stdout,
                             r"^Velmor \d+\.\d+\.\d+ \(\d\d\.\d\d\.\d{4}\)\n$")
            # No bus at all is an answer, not a wait.
            self.assertEqual(desktop.velmor("now").stderr, NO_SESSION)


if __name__ == "__main__":
    unittest.main()
