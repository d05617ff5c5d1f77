"""A desktop of its own for one test program: a virtual display, a window manager, and Quillary driven by keys, mouse and
the accessibility tree."""

import json
import os
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["QUILLARY_PROGRAM"]
INSPECT = os.environ["QUILLARY_INSPECT"]
PICTURES = os.environ["QUILLARY_PICTURES"]


def wait_for(what, condition, seconds=20):
    """Asks until the answer is true and gives it; the display and the file system announce nothing to a test."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {seconds} s in vain: {what}")
        time.sleep(0.02)


def inspect(*requests):
    """The answers of the inspection program."""
    lines = "".join(json.dumps(request) + "\n" for request in requests)
    done = subprocess.run([INSPECT], input=lines, capture_output=True, text=True, check=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


class Display:
    """A virtual display with a window manager, for all tests of a program."""

    def __init__(self):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
            pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as pipe:
            os.environ["DISPLAY"] = ":" + pipe.readline().strip()
        # The accessibility bus has its socket there, and runs of several tests at once must not share one.
        self.runtime = tempfile.TemporaryDirectory()
        os.environ["XDG_RUNTIME_DIR"] = self.runtime.name
        subprocess.run(["dbus-update-activation-environment", "XDG_RUNTIME_DIR"], check=True)
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        os.environ.pop("WAYLAND_DISPLAY", None)
        self.manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        wait_for("the window manager", lambda: "_NET_SUPPORTING_WM_CHECK(WINDOW)" in
                 subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], capture_output=True, text=True).stdout)

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
        self.runtime.cleanup()

    @staticmethod
    def picture(name):
        os.makedirs(PICTURES, exist_ok=True)
        subprocess.run(["import", "-silent", "-window", "root", os.path.join(PICTURES, name + ".png")], check=False)


class Quillary:
    """One running program on a home and a folder of notes."""

    def __init__(self, home, preferences):
        self.home = home
        self.environment = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/config", XDG_STATE_HOME=home + "/state",
                                XDG_DATA_HOME=home + "/data", LANG="C.UTF-8", TZ="UTC")
        os.makedirs(home + "/config/quillary", exist_ok=True)
        with open(home + "/config/quillary/preferences.json", "w", encoding="utf-8") as file:
            json.dump(preferences, file)
        self.process = subprocess.Popen([PROGRAM], env=self.environment)
        self.window = wait_for("a window", self.find_window)
        # High enough for all rows of a test.
        subprocess.run(["xdotool", "windowactivate", "--sync", self.window, "windowmove", self.window, "20", "20",
                        "windowsize", "--sync", self.window, "1000", "740"], check=True, timeout=20)

    def find_window(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid)],
                               capture_output=True, text=True).stdout.split()
        return found[0] if found else None

    def start_again(self):
        return subprocess.run([PROGRAM], env=self.environment, timeout=30).returncode

    def is_active(self):
        answer = subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True).stdout.strip()
        return answer == self.window

    def title(self):
        """The title of the window without the name of the application behind it."""
        title = subprocess.run(["xdotool", "getwindowname", self.window], capture_output=True, text=True).stdout.strip()
        return title.removesuffix(" — Quillary")

    @staticmethod
    def keys(*names):
        subprocess.run(["xdotool", "key", "--delay", "8", *names], check=True)

    @staticmethod
    def type(text):
        subprocess.run(["xdotool", "type", "--delay", "8", text], check=True)

    @staticmethod
    def click(x, y, button=1):
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", str(button)], check=True)

    # The accessibility tree

    def application(self):
        from gi.repository import Atspi, GLib
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            try:
                child = desktop.get_child_at_index(index)
                if child is not None and child.get_process_id() == self.process.pid:
                    return child
            except GLib.Error:  # a program that ended and is still listed
                continue
        return None

    def find(self, role, name=None):
        """The first node on show of a role, and of a name if one is given."""
        from gi.repository import Atspi
        application = self.application()
        nodes = [application] if application else []
        while nodes:
            node = nodes.pop(0)
            try:
                if node.get_role_name() == role and name in (None, node.get_name()) and \
                        node.get_state_set().contains(Atspi.StateType.SHOWING):
                    return node
                if node.get_role_name() not in ("list", "table"):
                    nodes.extend(filter(None, (node.get_child_at_index(i) for i in range(node.get_child_count()))))
            except Exception:  # a node that ended between two questions
                continue
        return None

    def rows(self):
        """The titles of the rows of the list, headings included, from top to bottom."""
        from gi.repository import GLib
        try:
            rows = self.find("list", "Note")
            if rows is None:
                return []
            rows.clear_cache()
            names = [rows.get_child_at_index(i).get_name() for i in range(rows.get_child_count())]
            return [name.rsplit(", ", 1)[0] for name in names]
        except (GLib.Error, AttributeError):
            return []

    def click_row(self, title):
        from gi.repository import Atspi
        rows = self.find("list", "Note")
        for index in range(rows.get_child_count()):
            row = rows.get_child_at_index(index)
            if row.get_name().rsplit(", ", 1)[0] == title:
                place = Atspi.Component.get_extents(row, Atspi.CoordType.SCREEN)
                self.click(place.x + place.width // 2, place.y + place.height // 2)
                return
        raise AssertionError(f"there is no row {title}")

    def expect_rows(self, expected):
        try:
            wait_for("the rows", lambda: self.rows() == expected)
        except AssertionError:
            raise AssertionError(f"the rows are {self.rows()}, expected {expected}") from None

    def close(self):
        """Ends the program. It takes its leave where it can: the accessibility registry may go deaf after one that is killed."""
        if self.process.poll() is None:
            self.process.terminate()
        try:
            self.process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()


class DesktopTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = Display()
        cls.addClassCleanup(cls.display.close)
        import gi
        gi.require_version("Atspi", "2.0")

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = folder.name
        self.notes = folder.name + "/Note"
        os.mkdir(self.notes)
        self.preferences = {"notesDirectory": self.notes}

    def start(self):
        program = Quillary(self.home, self.preferences)
        self.addCleanup(program.close)
        self.addCleanup(self.display.picture, self.id())
        return program

    def write(self, name, text):
        path = os.path.join(self.notes, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8", newline="") as file:
            file.write(text)

    def read(self, name):
        with open(os.path.join(self.notes, name), encoding="utf-8", newline="") as file:
            return file.read()

    def created(self, name):
        return inspect({"op": "store.info", "directory": self.notes, "path": name})[0]["created"]
