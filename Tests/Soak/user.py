"""What the user does with notes: each step by chance, with one that is chosen by chance."""

import os
import time

from hands import Ended, Hands
from oracle import Breach, Note

FEWEST_NOTES = 12
MOST_NOTES = 45


class User(Hands):
    def __init__(self, chance, display, home):
        super().__init__(chance, display, home)
        self.trash = home + "/data/Trash/files"
        # A note that was just made and has no title yet by which it is known.
        self.stray = None

    def step_type(self):
        note = self.any_note()
        self.select(note)
        for _ in range(self.random.randint(1, 4)):
            self.type_behind(note, self.token())
            if self.random.random() < 0.4:
                time.sleep(self.random.uniform(0, 1.2))

    def step_type_and_undo(self):
        note = self.any_note()
        self.select(note)
        note.may_shrink = True
        self.type_behind(note, self.token())
        self.keys(*["ctrl+z"] * self.random.randint(1, 4))
        self.keys(*["ctrl+shift+z"] * 12)
        note.processed = time.monotonic()
        while not note.is_whole(self.oracle.contents(note)):
            self.oracle.check(note)
            if self.is_killed:
                raise Ended
            time.sleep(0.02)
        # The text of a moment ago may have been the same one; the save of this one is still to come.
        time.sleep(1)
        note.may_shrink = False
        self.settle(note)

    def step_walk(self):
        self.face_the_window()
        self.keys(*[self.random.choice(("ctrl+Down", "ctrl+Up"))] * self.random.randint(1, 12))

    def step_look_around(self):
        """Search in the text, preview, zoom: nothing that changes a text."""
        self.select(self.any_note())
        self.keys("ctrl+f")
        self.program.type(self.word())
        self.wait_for_input()
        self.keys("Return", "Return", "Escape")
        self.keys("ctrl+shift+p")
        self.keys("ctrl+shift+p")
        self.keys("ctrl+plus", "ctrl+plus", "ctrl+0")

    def step_new_note(self):
        if len(self.oracle.notes) >= MOST_NOTES:
            return
        self.face_the_window()
        self.stray = Note(self.new_key(), "")
        before = set(self.oracle.files())
        self.keys("ctrl+n")
        self.wait_until("the file of a new note", lambda: set(self.oracle.files()) - before)
        self.type_behind(self.stray, self.token())
        self.give_title(f"{self.stray.key} {self.word()}")
        self.wait_until("the title of a new note", lambda: self.adopt_named_stray())

    def adopt_named_stray(self):
        if any(os.path.basename(path).startswith(self.stray.key) for path in self.oracle.files()):
            self.oracle.notes[self.stray.key] = self.stray
            self.stray = None
            return True
        return False

    def adopt_stray(self):
        """A note that was just made when the process ended has no key yet."""
        for path in self.oracle.files():
            name = os.path.basename(path)
            if self.stray is not None and name.startswith("Nota "):
                key = self.stray.key
                if key not in self.oracle.notes:
                    self.oracle.notes[key] = self.stray
                os.rename(os.path.join(self.directory, path), os.path.join(self.directory, os.path.dirname(path), key + os.path.splitext(name)[1]))
            elif self.stray is not None and name.startswith(self.stray.key):
                self.oracle.notes[self.stray.key] = self.stray
        self.stray = None

    def step_rename(self):
        note = self.any_note()
        self.select(note)
        if self.random.random() < 0.5:
            self.type_behind(note, self.token())
        title = f"{note.key} {self.word()} {self.random.randint(1, 999)}"
        self.give_title(title)
        self.wait_until("the new name", lambda: os.path.basename(self.oracle.path(note)).startswith(title))

    def step_group(self):
        note = self.any_note()
        self.select(note)
        if self.random.random() < 0.5:
            self.type_behind(note, self.token())
        before = os.path.dirname(self.oracle.path(note))
        self.keys("ctrl+g")
        self.keys("Escape")
        self.wait_until("the new folder", lambda: os.path.dirname(self.oracle.path(note)) != before)

    def step_move_in_the_list(self):
        self.select(self.any_note())
        self.keys(*[self.random.choice(("ctrl+alt+Down", "ctrl+alt+Up"))] * self.random.randint(1, 5))

    def step_trash(self):
        """The whole text, also what was typed just before, is in the Trash."""
        if len(self.oracle.notes) <= FEWEST_NOTES:
            return
        note = self.any_note()
        self.select(note)
        if self.random.random() < 0.5:
            self.type_behind(note, self.token())
        self.keys("ctrl+shift+BackSpace")
        del self.oracle.notes[note.key]
        self.keys("Return")

        def find():
            names = os.listdir(self.trash) if os.path.isdir(self.trash) else []
            return [os.path.join(self.trash, name) for name in names if name.split(" ")[0].split(".")[0] == note.key]
        try:
            self.wait_until("the note in the Trash", find)
        except Ended:
            if not find():
                self.oracle.notes[note.key] = note
                raise
        text = self.oracle.read(find()[0])
        if not note.is_whole(text):
            raise Breach(f"the Trash holds {text!r} of {note.key}, typed was {note.typed!r} behind {note.bases}")

    def step_close_and_open_the_window(self):
        self.face_the_window()
        self.keys("ctrl+w")
        self.wait_until("the window to close", lambda: self.program.find_window() is None)
        self.program.start_again()
        self.program.window = self.wait_until("the window", self.program.find_window)
        self.face_the_window()
