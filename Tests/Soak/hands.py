"""What a user's hands do with the program: keys, the window in front, a note that is selected, a text that is typed."""

import ctypes
import os
import time

from oracle import PATIENCE, Breach, Oracle
from screen import activate, ask_xdotool
from vitals import wait_until_asleep

WORDS = ("acqua", "bosco", "cielo", "dado", "erba", "fiume", "gatto", "isola", "lago", "monte", "neve", "orto", "prato", "quadro")


class Ended(Exception):
    """The program was killed, as planned."""


def turn_key_repetition_off():
    """On a busy machine a key may stay down for as long as one that repeats."""
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    x11.XAutoRepeatOff(display)
    x11.XSync(display, 0)
    x11.XCloseDisplay(display)


class Hands:
    """Everything waits until the program is done with it, and raises `Ended` once the program was killed."""

    def __init__(self, chance, display, home):
        self.random = chance
        self.display = display
        self.home = home
        self.directory = home + "/Note"
        self.oracle = Oracle(self.directory)
        self.program = None
        self.killed_at = None
        self.next_key = 0
        self.typed = 0
        self.slowest_save = 0.0

    # Texts and names

    def new_key(self):
        self.next_key += 1
        return f"n{self.next_key:04}"

    def word(self):
        return self.random.choice(WORDS)

    def token(self):
        """Some words that are typed, and a number that is in no other text."""
        self.typed += 1
        words = " ".join(self.word() for _ in range(self.random.randint(1, 4)))
        return f" {words} t{self.typed}"

    def any_note(self):
        return self.random.choice(list(self.oracle.notes.values()))

    # Keys and windows

    @property
    def is_killed(self):
        return self.killed_at is not None

    def wait_for_input(self):
        """Waits until the keys so far have gone from the display to the program and the program is done with them."""
        try:
            if not wait_until_asleep([self.display.server.pid, self.program.process.pid]) and not self.is_killed:
                raise Breach("the program has been busy for a minute")
        except OSError:
            pass
        if self.is_killed:
            raise Ended
        if self.program.process.poll() is not None:
            raise Breach(f"the program ended by itself with {self.program.process.returncode}")

    def keys(self, *names):
        self.program.keys(*names)
        self.wait_for_input()

    def face_the_window(self):
        """Closes an alert that is in the way."""
        for _ in range(20):
            if self.program.is_active():
                return
            if ask_xdotool("getactivewindow", "getwindowpid") == [str(self.program.process.pid)]:
                self.keys("Escape")
            else:
                activate(self.program.window)
            self.wait_for_input()
        raise Breach("the window doesn't come to the front")

    # Notes

    def select(self, note):
        """Selects a note through the search, with the focus in its text."""
        self.face_the_window()
        self.keys("ctrl+k")
        self.keys("ctrl+a")
        self.program.type(note.key)
        self.wait_for_input()
        self.keys("Return")
        if self.program.title().split(" ")[0] != note.key:
            raise Breach(f"the search for {note.key}, which is {self.oracle.path(note)}, leads to {self.program.title()!r}")

    def type_behind(self, note, text):
        self.keys("ctrl+End")
        note.type(text)
        self.program.type(text)
        self.wait_for_input()
        note.processed = time.monotonic()

    def give_title(self, title):
        self.keys("ctrl+r")
        self.keys("ctrl+a")
        self.program.type(title)
        self.wait_for_input()
        self.keys("Return")

    def settle(self, note):
        """Waits until all that was typed is on disk."""
        start = time.monotonic()
        while not note.is_settled:
            self.oracle.check(note)
            if self.is_killed:
                raise Ended
            time.sleep(0.02)
        self.slowest_save = max(self.slowest_save, time.monotonic() - start)

    def settle_all(self):
        for note in list(self.oracle.notes.values()):
            self.settle(note)

    def wait_until(self, what, condition):
        deadline = time.monotonic() + PATIENCE
        while True:
            answer = condition()
            if answer:
                return answer
            if self.is_killed:
                raise Ended
            if time.monotonic() > deadline:
                raise Breach(f"waited {PATIENCE} s in vain for {what}")
            time.sleep(0.02)
