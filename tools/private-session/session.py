"""A private desktop: display, window manager, buses, sound server and home, of its own. Live tests,
benchmarks and the demonstration run Velmor in it; the variable VELMOR names the built program.

    with Session() as desktop:
        player = desktop.start(["mpv", "--idle"])
        desktop.waitUntil(lambda: desktop.velmor("now").returncode == 0, "a track is named")

Nothing of the user's own session is seen or touched, and leaving the block ends every process that
was started inside it, also those that the buses started and those that left their parents.
"""

import contextlib
import ctypes
import fcntl
import json
import os
import shutil
import signal
import subprocess
import tempfile
import time

DEADLINE = 60
"""Generous: a machine under load is slow, and a condition that comes true ends the wait."""

NO_SESSION = ("No active media session found. Start playback in a supported DJ app, "
              "then try again.\n")

BUS_CONFIGURATION = """<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)


class Session:
    """Take what is needed; without `bus` there is no session bus at all.

    No `manager` leaves the display without one. Process names are the one thing that sessions share: who starts programs under names that
    Velmor looks for asks to be `alone`, and no other session of this machine runs beside it.
    """

    def __init__(self, display=True, bus=True, sound=False, accessibility=False, alone=False,
                 manager=("openbox", "--sm-disable"), screen="1440x900"):
        services = ((bus, self._startBus), (display, self._startDisplay),
                    (accessibility, self._startAccessibility), (sound, self._startSound))
        self.services = [start for wanted, start in services if wanted]
        self.alone = alone
        self.manager = manager
        self.screen = screen
        self.processes = []
        self.entered = contextlib.ExitStack()

    def __enter__(self):
        self.turn = _takeTurn(self.alone)
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        self.before = set(descendants(os.getpid()))
        self.root = tempfile.mkdtemp(prefix="velmor-session-")
        self.home = self._folder("home")
        self.runtime = self._folder("runtime")
        self.environment = {
            "HOME": self.home,
            "XDG_RUNTIME_DIR": self.runtime,
            "TMPDIR": self._folder("tmp"),
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "TZ": "UTC",
            "GSETTINGS_BACKEND": "memory",
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "QT_QPA_PLATFORM": "xcb",
            # What a sanitizer build of Velmor is told must reach it here too.
            **{name: value for name, value in os.environ.items()
               if name.endswith("SAN_OPTIONS")},
        }
        try:
            for start in self.services:
                start()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def __exit__(self, *_):
        deadline = time.monotonic() + 10
        while started := [pid for pid in descendants(os.getpid()) if pid not in self.before]:
            overdue = time.monotonic() > deadline - 5
            for pid in started:
                _signal(pid, signal.SIGCONT)
                _signal(pid, signal.SIGKILL if overdue else signal.SIGTERM)
            for process in self.processes:
                process.poll()
            for pid in started:
                with contextlib.suppress(ChildProcessError):
                    os.waitpid(pid, os.WNOHANG)
            if time.monotonic() > deadline:
                break
            time.sleep(0.05)
        self.entered.close()
        shutil.rmtree(self.root, ignore_errors=True)
        os.close(self.turn)

    def enter(self, context):
        """Enters a context that ends with this desktop, and gives what it gives."""
        return self.entered.enter_context(context)

    def start(self, arguments, environment=None, log=None, **options):
        """Starts a program in this desktop. What it prints goes to the file `log` of `root`."""
        path = os.path.join(self.root, log or os.path.basename(arguments[0]) + ".log")
        with open(path, "ab") as output:
            process = subprocess.Popen(
                arguments, env={**self.environment, **(environment or {})}, cwd=self.home,
                stdout=output, stderr=output, start_new_session=True,
                preexec_fn=_endWithParent, **{"stdin": subprocess.DEVNULL, **options})
        self.processes.append(process)
        return process

    def stop(self, process):
        """Ends a process that `start` gave, also one that hangs."""
        _signal(process.pid, signal.SIGCONT)
        process.terminate()
        try:
            process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()

    def run(self, arguments, environment=None, timeout=DEADLINE, **options):
        """Runs a program to its end in this desktop; inputs and outputs are texts."""
        if "input" not in options:
            options["stdin"] = subprocess.DEVNULL
        return subprocess.run(
            arguments, env={**self.environment, **(environment or {})}, cwd=self.home,
            capture_output=True, text=True, timeout=timeout, **options)

    def velmor(self, *arguments, **options):
        """Runs Velmor to its end."""
        return self.run([builtVelmor(), *arguments], **options)

    def nowPlaying(self, environment=None):
        """The track that Velmor names, or None when it reports that it found none."""
        result = self.velmor("now", "--json", environment=environment)
        return json.loads(result.stdout) if result.returncode == 0 else None

    def named(self, *fields):
        """These fields of the track, or the sentence that says why there is none."""
        result = self.velmor("now", "--json")
        if result.returncode != 0:
            return result.stderr
        track = json.loads(result.stdout)
        return tuple(track[field] for field in fields)

    def waitForTrack(self, environment=None, **expected):
        """Asks Velmor until the track has the expected fields, and gives the track."""
        def matching():
            track = self.nowPlaying(environment)
            seen.append(track)
            return track and all(track.get(name) == value for name, value in expected.items())

        seen = []
        waitUntil(matching, lambda: f"a track with {expected}; last seen {seen[-1]}")
        return seen[-1]

    def call(self, destination, path, method, bus="--session"):
        """What a method on a bus answers, "" when it does not."""
        return self.run(["gdbus", "call", bus, "--dest", destination, "--object-path", path,
                         "--method", method]).stdout

    def busNames(self):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                         "org.freedesktop.DBus.ListNames")

    def log(self, name):
        """What the program of that name has printed so far."""
        with open(os.path.join(self.root, name + ".log"), encoding="utf-8", errors="replace") as log:
            return log.read()

    def _folder(self, name):
        path = os.path.join(self.root, name)
        os.mkdir(path, 0o700)
        return path

    def _startDisplay(self):
        # The server itself picks a display that nobody uses.
        reading, writing = os.pipe()
        self.start(["Xvfb", "-displayfd", str(writing), "-screen", "0", self.screen + "x24",
                    "-nolisten", "tcp", "-noreset"], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError("no display: " + self.log("Xvfb"))
        self.environment["DISPLAY"] = ":" + number
        asked = ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]
        # It may name its display before it lets the first program in.
        waitUntil(lambda: self.run(asked).returncode == 0, "the display answers")
        if not self.manager:
            return
        self.startManager()

    def startManager(self):
        self.windowManager = self.start(list(self.manager), log="manager.log")
        asked = ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"]
        waitUntil(lambda: "window id" in self.run(asked).stdout,
                  lambda: "a window manager runs: " + self.log("manager"))

    def _startBus(self):
        socket = os.path.join(self.runtime, "bus")
        configuration = os.path.join(self.root, "bus.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(BUS_CONFIGURATION.format(socket=socket))
        self.start(["dbus-daemon", "--nofork", "--config-file", configuration])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + socket
        waitUntil(self.busNames, "the session bus answers")

    def _startAccessibility(self):
        self.start(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        address = waitUntil(lambda: self.call("org.a11y.Bus", "/org/a11y/bus",
                                              "org.a11y.Bus.GetAddress"), "the launcher answers")
        # Programs that come up before the registry does are never listed by it.
        waitUntil(lambda: self.call(
            "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root",
            "org.a11y.atspi.Accessible.GetChildren", "--address=" + address.split("'")[1]),
            "the accessibility registry answers")

    def _startSound(self):
        socket = os.path.join(self.runtime, "pulse.socket")
        self.start(["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
                    "--disable-shm=yes", "--use-pid-file=no",
                    "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket,
                    "-L", "module-null-sink sink_name=speakers"])
        self.environment["PULSE_SERVER"] = "unix:" + socket
        waitUntil(lambda: "speakers" in self.run(["pactl", "list", "short", "sinks"]).stdout,
                  "the sound server answers")


def builtVelmor():
    """The program that runs in the session, which the variable VELMOR names."""
    return os.path.abspath(os.environ["VELMOR"])


def waitUntil(condition, what, seconds=DEADLINE):
    """Waits for the condition and gives its value. `what`, a text or a function that gives one,
    says what was awaited in vain."""
    deadline = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"in {seconds} s not seen: {what() if callable(what) else what}")
        time.sleep(0.1)
    return value


def _takeTurn(alone):
    """Waits for the sessions that this one must not run beside; closing the result lets them."""
    path = os.path.join(tempfile.gettempdir(), "velmor-session.lock")
    lock = os.open(path, os.O_RDONLY | os.O_CREAT | os.O_CLOEXEC, 0o666)
    fcntl.flock(lock, fcntl.LOCK_EX if alone else fcntl.LOCK_SH)
    return lock


def _endWithParent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def descendants(ancestor):
    """The identifiers of all processes that this one started, and that those started."""
    children = {}
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as stat:
                parent = int(stat.read().rpartition(")")[2].split()[1])
        except (OSError, IndexError):
            continue
        children.setdefault(parent, []).append(int(entry))
    found, pending = [], [ancestor]
    while pending:
        for child in children.get(pending.pop(), []):
            found.append(child)
            pending.append(child)
    return found


def _signal(pid, number):
    with contextlib.suppress(ProcessLookupError):
        os.kill(pid, number)
