"""A whole suggestion: a real player, real HTTP, the program as a user starts it."""

import json
import os
import unittest

from model_provider import SONGS, ModelProvider
from players import configure, playSong, tagged
from session import NO_SESSION, Session, waitUntil

PAGE = """<!doctype html><title>Radio</title><audio id=a src=song.wav loop></audio><script>
navigator.mediaSession.metadata = new MediaMetadata(
  {title: 'Über “Song” <b>', artist: 'Chromium Artist', album: 'Web Album'});
a.play();
</script>"""


class SuggestionTest(unittest.TestCase):
    def testNamesThePlayingTrackAndRanksWhatFollows(self):
        with Session(display=False) as desktop:
            provider = desktop.enter(ModelProvider())
            track = playSong(desktop, title="It's \"Ænima\" 東京", artist="Sigur Rós",
                             album="Left | Right")
            self.assertEqual(
                (track["artist"], track["album"], track["source"], track["detection"]),
                ("Sigur Rós", "Left | Right", "mpv", "macOS media session"))
            for model, name, count in (("thinkingmachines/Inkling-Small", "Tinker", 3),
                                       ("gpt-5", "OpenAI", 10)):
                configure(desktop, aiModel=model, recommendationCount=count)
                ran = desktop.velmor("suggest", "--json", environment=provider.environment)
                self.assertEqual((ran.returncode, ran.stderr), (0, ""))
                result = json.loads(ran.stdout)
                self.assertEqual(len(result["recommendations"]), count)
                self.assertEqual(result["currentTrack"]["song"], track["title"])
                self.assertEqual(result["source"], "macOS Media Control + " + name)
            # The provider has refused every request that was not to the letter.
            tinker, openAI = (request["body"] for request in provider.requests)
            self.assertIn('- Song: It\'s "Ænima" 東京\n- Artist: Sigur Rós\n',
                          tinker["messages"][0]["content"][0]["text"])
            self.assertIn("instructions", openAI)
            desktop.call("org.mpris.MediaPlayer2.mpv", "/org/mpris/MediaPlayer2",
                         "org.mpris.MediaPlayer2.Player.Pause")
            waitUntil(lambda: desktop.named() == NO_SESSION, "nothing plays")

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
            desktop.waitForTrack(title="Über “Song” <b>", artist="Chromium Artist",
                                 album="Web Album", source="Chrome")

    def testTellsInASentenceWhatWentWrong(self):
        with Session(display=False) as desktop:
            def expect(sentence, command, environment, printed=""):
                ran = desktop.velmor(command, environment=environment)
                self.assertEqual((ran.returncode, ran.stdout, ran.stderr), (1, printed, sentence))

            expect(NO_SESSION, "now", {})
            playSong(desktop, title="T", artist="A")
            # What was found is not lost with the suggestion.
            track = "A – T [mpv: macOS media session]\n"
            for sentence, fault in (
                    ("request failed with status 401\n", {"key": "another"}),
                    ("Tinker answered with a web page: is this network asking you to log in?\n",
                     {"text": "<html>"}),
                    ("The network connection was lost.\n", {"cut": True}),
                    ("AI returned 9 recommendations; expected 10\n", {"songs": SONGS[:9]})):
                with self.subTest(fault):
                    faulty = desktop.enter(ModelProvider(**fault))
                    expect(sentence, "suggest",
                           {**faulty.environment, "TINKER_API_KEY": "local-key"}, track)

    def testAnswersWithoutABusOrARightCommandLine(self):
        with Session(display=False, bus=False) as desktop:
            ran = desktop.velmor("now", "--xml")
            self.assertEqual((ran.returncode, ran.stderr[:14]), (2, "usage: velmor "))
            self.assertRegex(desktop.velmor("--version").stdout,
                             r"^Velmor \d+\.\d+\.\d+ \(\d\d\.\d\d\.\d{4}\)\n$")
            self.assertEqual(desktop.named(), NO_SESSION)


if __name__ == "__main__":
    unittest.main()
