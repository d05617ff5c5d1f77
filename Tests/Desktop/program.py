"""A running Quillary, driven by keys, mouse and the accessibility tree."""

import json
import os
import subprocess

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

from screen import ask_xdotool, wait_for, xdotool

PROGRAM = os.environ["QUILLARY_PROGRAM"]

EDITOR = "Testo della nota"
BUTTONS = ("push button", "toggle button", "check box", "radio button", "button menu", "page tab")
# Their rows are asked for by name, and may be ten thousand.
LONG = ("list", "table")


def asked(question, otherwise=None):
    """The answer to a question about nodes, any of which may end before it is answered."""
    try:
        return question()
    except GLib.Error:
        return otherwise


def children(node):
    """The children of a node that are there; none has none."""
    for index in range(node.get_child_count() if node is not None else 0):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def has_state(node, name):
    """Whether a node has a state now; one that has ended, or none, has none."""
    def has():
        node.clear_cache()
        return node.get_state_set().contains(getattr(Atspi.StateType, name))
    return node is not None and asked(has, False)


def extents(node):
    """The place of a node on the screen."""
    return Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)


def middle(node):
    place = extents(node)
    return place.x + place.width // 2, place.y + place.height // 2


def title_of(name):
    """What the name of a row says before its last comma: titles come before dates and counts."""
    return name.rsplit(", ", 1)[0]


class Quillary:
    """One running program on a home and a folder of notes."""

    def __init__(self, home, preferences, program=PROGRAM):
        self.home = home
        self.environment = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/config", XDG_STATE_HOME=home + "/state",
                                XDG_DATA_HOME=home + "/data", LANG="C.UTF-8", TZ="UTC")
        os.makedirs(home + "/config/quillary", exist_ok=True)
        with open(home + "/config/quillary/preferences.json", "w", encoding="utf-8") as file:
            json.dump(preferences, file)
        self.process = subprocess.Popen([program], env=self.environment)
        self.window = wait_for("a window", self.find_window)
        # High enough for all rows of a test.
        xdotool("windowactivate", "--sync", self.window, "windowmove", self.window, 20, 20,
                "windowsize", "--sync", self.window, 1000, 740)

    def windows(self):
        """The windows on show, open menus among them."""
        return ask_xdotool("search", "--onlyvisible", "--pid", self.process.pid)

    def find_window(self):
        return next(iter(self.windows()), None)

    def start_again(self):
        return subprocess.run([PROGRAM], env=self.environment, timeout=30).returncode

    def is_active(self):
        return ask_xdotool("getactivewindow") == [self.window]

    def title(self):
        """The title of the window without the name of the application behind it."""
        title = subprocess.run(["xdotool", "getwindowname", self.window], capture_output=True, text=True).stdout.strip()
        return title.removesuffix(" — Quillary")

    @staticmethod
    def keys(*names):
        xdotool("key", "--delay", 8, *names)

    @staticmethod
    def type(text):
        xdotool("type", "--delay", 8, text)

    @staticmethod
    def click(x, y, button=1):
        xdotool("mousemove", x, y, "click", button)

    def close(self):
        """Ends the program. It takes its leave where it can: the accessibility registry may go deaf after one that is killed."""
        if self.process.poll() is None:
            self.process.terminate()
        try:
            self.process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()

    # The accessibility tree

    def application(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            # A program that has ended is listed for a while.
            child = asked(lambda: desktop.get_child_at_index(index))
            if child is not None and asked(child.get_process_id) == self.process.pid:
                return child
        return None

    def find_where(self, is_wanted, start=None, passed_over=LONG):
        """The first node on show that is wanted, level by level; what is within nodes of some roles is passed over."""
        nodes = [start or self.application()]
        while nodes:
            node = nodes.pop(0)
            if node is None:
                continue
            if asked(lambda: is_wanted(node) and node.get_state_set().contains(Atspi.StateType.SHOWING)):
                return node
            nodes += asked(lambda: [] if node.get_role_name() in passed_over else list(children(node)), [])
        return None

    def find(self, role, name=None):
        """The first node on show of a role, and of a name if one is given."""
        return self.find_where(lambda node: node.get_role_name() == role and name in (None, node.get_name()))

    def find_named(self, name):
        return self.find_where(lambda node: node.get_name() == name)

    def find_focused(self, start=None):
        """The control that has the keyboard; none if nobody says so."""
        return self.find_where(lambda node: node.get_state_set().contains(Atspi.StateType.FOCUSED) and
                               node.get_role_name() not in ("frame", "dialog"), start, ("menu bar", "table"))

    def find_button(self, name, *roles):
        return next(filter(None, (self.find(role, name) for role in roles or BUTTONS)), None)

    def has_focus(self, role, name):
        return has_state(self.find(role, name), "FOCUSED")

    def click_node(self, node):
        self.click(*middle(node))

    def click_button(self, name, *roles):
        """Clicks a button of a name, of any kind unless roles are given, once it is there."""
        self.click_node(wait_for(f"the button {name}", lambda: self.find_button(name, *roles)))

    # Lists and their rows, always as they are now: what is remembered of a list may be older than its rows

    def find_list(self, name):
        found = self.find("list", name)
        if found is not None:
            found.clear_cache()
        return found

    def names_in(self, name):
        """The names of the rows of a list, from top to bottom; nothing without a list."""
        return asked(lambda: [row.get_name() for row in children(self.find_list(name))], [])

    def find_row(self, title, within="Note"):
        """The row of a whole name or of a title; none if there is none."""
        def find():
            rows = children(self.find_list(within))
            row = next((row for row in rows if title in (row.get_name(), title_of(row.get_name()))), None)
            if row is not None:
                row.clear_cache()
            return row
        return asked(find)

    def row(self, title, within="Note"):
        return wait_for(f"the row {title}", lambda: self.find_row(title, within))

    def click_row(self, title, within="Note"):
        self.bring_into_view(title, within)
        self.click_node(self.row(title, within))

    def bring_into_view(self, title, within="Note"):
        """Turns the wheel over a list until the middle of a row is on show."""
        def way():
            y = middle(self.row(title, within))[1]
            room = extents(wait_for(f"the list {within}", lambda: self.find_list(within)))
            return min(y - room.y, 0) or max(y - (room.y + room.height - 1), 0)
        while left := way():
            xdotool("mousemove", *middle(self.find_list(within)), "click", 5 if left > 0 else 4)
            wait_for(f"the list to move {title}", lambda: way() != left)

    # The notes in the list

    def rows(self):
        """The titles of the rows of the list, headings included, from top to bottom."""
        return [title_of(name) for name in self.names_in("Note")]

    def expect_rows(self, expected):
        try:
            wait_for("the rows", lambda: self.rows() == expected)
        except AssertionError:
            raise AssertionError(f"the rows are {self.rows()}, expected {expected}") from None

    def open_note(self, title):
        """Clicks the row of a note, until the note is on show."""
        self.click_row(title)
        wait_for(f"the note {title}", lambda: self.title() == title)
        wait_for("the focus", self.is_active)
