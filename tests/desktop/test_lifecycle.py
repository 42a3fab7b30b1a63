"""How the program starts and ends."""

import os
import signal
import time
import unittest

from velmor_window import CLOSE, FULL, MINIMISE, SQUARE, VelmorDesktop, hungPlayer

from model_provider import ModelProvider
from players import configure, playSong
from session import Session, waitUntil

ENDS_WITHIN = 5
"""On a busy machine; alone it takes a fraction of a second."""


class LifecycleTest(unittest.TestCase):
    def open(self, **options):
        self.desktop = self.enterContext(VelmorDesktop(**options))
        process = self.desktop.open(200, 150)
        self.desktop.waitForFrame((200, 150, *FULL))
        return process

    def testASecondStartRaisesTheFirst(self):
        process = self.open()
        desktop = self.desktop
        other = desktop.otherWindow()
        desktop.activate(other)
        waitUntil(lambda: desktop.active() == other.id, "the other window is active")
        self.assertEqual(desktop.run([desktop.program]).returncode, 0)
        waitUntil(lambda: desktop.active() == desktop.client().id, "the first one is active")
        self.assertIsNone(process.poll())
        desktop.shrink()
        self.assertEqual(desktop.run([desktop.program]).returncode, 0)
        desktop.waitForSize(SQUARE)

    def testASecondStartSaysThatTheFirstHangs(self):
        process = self.open()
        process.send_signal(signal.SIGSTOP)
        began = time.monotonic()
        result = self.desktop.run([self.desktop.program])
        print(f"said after {time.monotonic() - began:.1f} s")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("Velmor is running already, but it does not answer.", result.stderr)
        process.send_signal(signal.SIGCONT)
        self.desktop.waitForFrame((200, 150, *FULL))

    def testEveryEndIsQuickAndLeavesNothing(self):
        for how in ("TERM", "INT", "quit", "close", "TERM while compact"):
            with self.subTest(how):
                process = self.open()
                desktop = self.desktop
                desktop.drag((200, 4), 50, 0)
                desktop.waitForFrame((250, 150, *FULL))
                if "compact" in how:
                    desktop.shrink()
                self.endsCleanly(process, how.split()[0])
                place = 200 if how == "quit" else 250
                self.assertEqual(desktop.saved(), (place, 150, *FULL))

    def testEndsInTheMiddleOfAnything(self):
        for state in ("poll", "capture", "request"):
            for how in ("TERM", "quit"):
                with self.subTest(state=state, how=how):
                    process = self.openIn(state)
                    self.endsCleanly(process, how)

    def openIn(self, state):
        """Opens the window and brings it to where something is under way."""
        desktop = self.desktop = self.enterContext(VelmorDesktop(sound=state == "capture"))
        if state == "poll":
            hungPlayer(desktop)
            configure(desktop, autoSuggestTracks=True)
            return desktop.open()
        provider = desktop.enter(ModelProvider(delay=60))
        extractor = {"ESSENTIA_EXTRACTOR": "/bin/false"} if state == "capture" else {}
        desktop.environment.update(provider.environment, **extractor)
        playSong(desktop, title="Song", artist="Band")
        configure(desktop)
        process = desktop.open()
        desktop.ask()
        begun = {"capture": lambda: desktop.listens(process), "request": lambda: provider.requests}
        waitUntil(begun[state], f"the {state} is under way")
        return process

    def endsCleanly(self, process, how):
        children = self.desktop.children(process)
        self.assertTrue(children)
        began = time.monotonic()
        if how == "quit":
            self.desktop.key("ctrl+q")
        elif how == "close":
            self.desktop.click(CLOSE)
        else:
            process.send_signal(getattr(signal, "SIG" + how))
        self.assertEqual(self.desktop.ended(process, ENDS_WITHIN), 0)
        print(f"ended in {time.monotonic() - began:.2f} s")
        waitUntil(lambda: not any(os.path.exists(f"/proc/{child}/exe") for child in children),
                  "no child is left")
        self.assertEqual(os.listdir(self.desktop.environment["TMPDIR"]), [])

    def testALostDisplayOrBusEndsItWithTheFrameSaved(self):
        for name, program, status, line in (
                ("display", "Xvfb", 1, "Velmor: the connection to the display is lost."),
                ("bus", "dbus-daemon", 0, "Velmor: the session bus is gone: the end.")):
            with self.subTest(name):
                desktop = self.desktop = self.enterContext(VelmorDesktop())
                desktop.environment["VELMOR_LOG_STDERR"] = "1"
                process = desktop.open(200, 150)
                desktop.drag((200, 4), 50, 0)
                desktop.waitForFrame((250, 150, *FULL))
                time.sleep(0.2)  # it looks at its own window ten times a second
                desktop.lose(program)
                self.assertEqual(desktop.ended(process, ENDS_WITHIN), status)
                self.assertIn(line, desktop.log("velmor"))
                self.assertEqual(desktop.saved(), (250, 150, *FULL))

    def testWithoutADisplayASentenceSaysWhatWorks(self):
        with Session(display=False) as desktop:
            for display in ({}, {"DISPLAY": ":999999"}):
                result = desktop.velmor(environment=display)
                self.assertEqual(result.returncode, 2)
                self.assertRegex(result.stderr, r"^velmor: the window needs an X11 display .*"
                                                r"now, suggest and bridge .*demo.*\n$")

    def testALostPageIsLoadedAgainOnceAndThenReported(self):
        desktop = self.desktop = self.enterContext(VelmorDesktop())
        desktop.environment["VELMOR_LOG_STDERR"] = "1"
        process = desktop.open(200, 150)
        self.kill(process, "WebKitNetworkPr")
        self.kill(process, "WebKitWebProces")
        waitUntil(lambda: "Velmor: the page was lost: The page's process ended unexpectedly." in
                  desktop.log("velmor"), "the death is logged")
        waitUntil(lambda: desktop.helpers(process, "WebKitWebProces"), "the page runs again")
        desktop.waitForFrame((200, 150, *FULL))
        self.assertEqual(desktop.alerts(), [])
        self.kill(process, "WebKitWebProces")
        waitUntil(desktop.alerts, "the alert is on the screen")
        desktop.screenshot("lost-page")
        desktop.activate(desktop.alerts()[0])
        desktop.key("Return")
        waitUntil(lambda: not desktop.alerts(), "the alert has been read")
        self.livesOn(process)

    def kill(self, process, name):
        [self.killed] = waitUntil(lambda: self.desktop.helpers(process, name), f"{name} runs")
        os.kill(self.killed, signal.SIGKILL)
        waitUntil(lambda: self.killed not in self.desktop.helpers(process, name), "it has ended")

    def livesOn(self, process):
        """The window still shrinks, comes back and ends as ever."""
        desktop = self.desktop
        desktop.click(MINIMISE)
        waitUntil(lambda: desktop.frame() == (625, 150, *SQUARE), "the square is there")
        desktop.click((40, 40))
        waitUntil(lambda: desktop.frame() == (200, 150, *FULL), "the window is back")
        process.terminate()
        self.assertEqual(desktop.ended(process), 0)


if __name__ == "__main__":
    unittest.main()
