"""The program on a desktop of a test's own, seen over the accessibility bus."""

import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

MISSING = 77


def need(*tools):
    """Ends the test, and says what is missing, where it cannot run."""
    for tool in tools:
        if not shutil.which(tool):
            print("skipped: needs", tool)
            sys.exit(MISSING)


try:
    import dbus
except ImportError:
    print("skipped: needs python3-dbus")
    sys.exit(MISSING)
need("dbus-daemon", "dbus-monitor", "setpriv")
if not os.path.exists("/usr/share/dbus-1/services/org.a11y.Bus.service"):
    print("skipped: needs at-spi2-core")
    sys.exit(MISSING)

ACCESSIBLE = "org.a11y.atspi.Accessible"
ACTION = "org.a11y.atspi.Action"
COMPONENT = "org.a11y.atspi.Component"
REGISTRY = "org.a11y.atspi.Registry"
ROOT = "/org/a11y/atspi/accessible/root"

# Numbers of the protocol.
FOCUSABLE, FOCUSED, SELECTED, SHOWING = 11, 12, 23, 25
ON_SCREEN = 0

# In seconds; longer than an event is on its way.
PAUSE = 0.25

failures = []


def check(holds, what):
    if not holds:
        print("FAILED", what)
        failures.append(what)


def wait_for(find, what, seconds=8):
    """What find() returns as soon as that is something; None after the time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        try:
            found = find()
        except dbus.DBusException:
            # An item that went while it was asked.
            found = None
        if found:
            return found
        time.sleep(0.05)
    check(False, what)
    return None


class Item:
    def __init__(self, bus, reference):
        self.bus = bus
        self.key = (str(reference[0]), str(reference[1]))
        self.proxy = bus.get_object(*self.key, introspect=False)

    def call(self, interface, method, *arguments):
        return self.proxy.get_dbus_method(method, interface)(*arguments)

    def get(self, interface, name):
        return self.call("org.freedesktop.DBus.Properties", "Get", interface, name)

    def name(self):
        return str(self.get(ACCESSIBLE, "Name"))

    def description(self):
        return str(self.get(ACCESSIBLE, "Description"))

    def role(self):
        return str(self.call(ACCESSIBLE, "GetRoleName"))

    def has(self, state):
        words = self.call(ACCESSIBLE, "GetState")
        return bool(int(words[state // 32]) >> state % 32 & 1)

    def children(self):
        return [Item(self.bus, child) for child in self.call(ACCESSIBLE, "GetChildren")]

    def actions(self):
        if ACTION not in self.call(ACCESSIBLE, "GetInterfaces"):
            return []
        return [str(action[0]) for action in self.call(ACTION, "GetActions")]

    def act(self, action):
        names = self.actions()
        matches = [i for i, name in enumerate(names) if name.lower() == action.lower()]
        check(matches, f"'{self.name()}' has no action {action}, only {names}")
        if matches:
            self.call(ACTION, "DoAction", dbus.Int32(matches[0]))

    def extents(self):
        """Its x, y, width and height on the screen."""
        return [int(n) for n in self.call(COMPONENT, "GetExtents", dbus.UInt32(ON_SCREEN))]

    def below(self):
        """This and everything below it that is on screen."""
        found = [self]
        for child in self.children():
            try:
                if child.has(SHOWING):
                    found += child.below()
            except dbus.DBusException as error:
                # It may go between two questions, as a map does that has faded away.
                if error.get_dbus_name() != "org.freedesktop.DBus.Error.UnknownObject":
                    raise
        return found

    def find(self, name):
        return next((item for item in self.below() if item.name() == name), None)


class Session:
    """Buses, a log of what is told of the focus, and a home folder, to which heirs add a
    display with a keyboard and a mouse; and the program in it."""

    def __init__(self, folder, **environment):
        self.folder = folder
        self.home = folder + "/home"
        self.processes = []
        self.environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": self.home,
            "XDG_CONFIG_HOME": folder + "/settings",
            "XDG_CACHE_HOME": folder + "/cache",
            "XDG_DATA_HOME": folder + "/data",
            "XDG_RUNTIME_DIR": folder,
            "QT_QUICK_BACKEND": "software",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            **environment,
        }
        os.mkdir(self.home)
        self.file("node_modules/a.bin", 12)
        self.file("node_modules/b.bin", 8)
        self.file("disk.iso", 10)
        self.file("film.mov", 6)

    def file(self, path, megabytes):
        path = os.path.join(self.home, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as out:
            out.write(b"x" * (megabytes << 20))

    def begin(self, program):
        self.begin_display()
        # The bus of the session starts the one for accessibility when it is asked for.
        daemon = self.start(["dbus-daemon", "--session", "--nofork", "--print-address"],
                            stdout=subprocess.PIPE)
        address = daemon.stdout.readline().decode().strip()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        session = dbus.bus.BusConnection(address)
        a11y = session.get_object("org.a11y.Bus", "/org/a11y/bus", introspect=False)
        address = str(a11y.get_dbus_method("GetAddress", "org.a11y.Bus")())
        self.bus = dbus.bus.BusConnection(address)
        self.events = os.path.join(self.folder, "events")
        with open(self.events, "w") as log:
            self.start(["dbus-monitor", "--address", address,
                        "interface='org.a11y.atspi.Event.Object'"], stdout=log)
        # The program tells only what somebody has asked to hear.
        Item(self.bus, (REGISTRY, "/org/a11y/atspi/registry")).call(
            REGISTRY, "RegisterEvent", "object:state-changed:focused")
        self.program = self.start([os.path.abspath(program)])

    def told_focus(self, item):
        """Whether an event has said that the item got the focus."""
        with open(self.events) as log:
            text = log.read()
        start = f"path={item.key[1]};"
        for event in text.split("signal time="):
            if start in event and 'string "focused"' in event and "int32 1" in event:
                return True
        return False

    def place(self, item):
        """The item's middle, once it rests there."""
        before, found = None, item.extents()
        while before != found:
            time.sleep(PAUSE)
            before, found = found, item.extents()
        x, y, width, height = found
        return x + width // 2, y + height // 2

    def start(self, command, **options):
        # Nothing outlives this, however it ends; what the buses start ends with them.
        process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL"] + command,
                                   env=self.environment, **options)
        self.processes.append(process)
        return process

    def window(self):
        for application in Item(self.bus, (REGISTRY, ROOT)).children():
            for window in application.children():
                if window.name() == "Brisalon" and window.children():
                    return window
        return None

    def end(self):
        for process in reversed(self.processes):
            process.terminate()
        for process in self.processes:
            try:
                process.wait(3)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


def run(begin, journey):
    """Ends the test: with 1 if the journey through the session that begin() made of a
    folder found anything wrong, or the program did not live to its end."""
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    with tempfile.TemporaryDirectory(prefix="brisalon-desktop-") as folder:
        session = begin(folder)
        try:
            session.begin(sys.argv[1])
            journey(session)
            check(session.program.poll() is None, "the program still runs")
        finally:
            session.end()
    sys.exit(1 if failures else 0)
