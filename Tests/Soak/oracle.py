"""What must be on disk, whatever happened to the program: for each note the texts that its file may hold."""

import os
import time

# The time that a text may take from the last key to the disk. A save begins half a second after it; the rest is for a
# machine that is busy with other things.
PATIENCE = 20
# After so long a save must have come to its end, so that not even the end of the process takes the text away.
SAVED_AFTER = 3
# For so long after another program wrote a file, the program may not have noticed it yet.
UNNOTICED = 5


class Breach(AssertionError):
    """Something that must never happen."""


class Note:
    """A note is known by the first word of its title, whatever else happens to its name and place."""

    def __init__(self, key, text):
        self.key = key
        self.bases = [text]
        self.typed = ""
        self.processed = None  # when the program had taken in all that was typed
        self.previous = None   # what the file held before another program wrote it, and when that was
        self.may_shrink = False

    @property
    def is_settled(self):
        return not self.typed and len(self.bases) == 1

    @property
    def text(self):
        """The one text of a settled note."""
        assert self.is_settled
        return self.bases[0]

    def allows(self, text):
        """Whether a text is one of those that lie on the way from a base to all that was typed behind it."""
        return any((base + self.typed).startswith(text) and (self.may_shrink or len(text) >= len(base)) for base in self.bases)

    def is_whole(self, text):
        return any(text == base + self.typed for base in self.bases)

    def type(self, text):
        if not self.typed and self.previous and time.monotonic() - self.previous[1] < UNNOTICED:
            # What the user changes before the program noticed the other one's text wins over it.
            self.bases.append(self.previous[0])
        self.typed += text
        self.processed = None

    def settle(self, text):
        self.bases, self.typed, self.processed = [text], "", None

    def replace(self, text):
        """Another program wrote the file."""
        self.previous = (self.text, time.monotonic())
        self.bases = [text]


def shorten(text):
    return repr(text) if len(text) < 200 else f"{text[:80]!r}…{text[-80:]!r} ({len(text)} characters)"


class Oracle:
    """All notes of a directory, and what their files must hold. Files that belong to nobody here are strays."""

    def __init__(self, directory):
        self.directory = directory
        self.notes = {}

    def read(self, path):
        with open(os.path.join(self.directory, path), encoding="utf-8", newline="") as file:
            return file.read()

    def files(self):
        """The visible files of the directory and its folders, as paths within it."""
        found = []
        for folder, folders, names in os.walk(self.directory):
            folders[:] = [name for name in folders if not name.startswith(".")]
            inner = os.path.relpath(folder, self.directory)
            found += [os.path.normpath(os.path.join(inner, name)) for name in names if not name.startswith(".")]
        return found

    def paths(self):
        """Where the note of each key is."""
        found = {}
        for path in self.files():
            key = os.path.splitext(os.path.basename(path))[0].split(" ")[0]
            if key in self.notes:
                found.setdefault(key, []).append(path)
        return found

    def path(self, note):
        """A note that is being moved may be seen in two places or in none for a moment."""
        for _ in range(100):
            paths = self.paths().get(note.key, [])
            if len(paths) == 1:
                return paths[0]
            time.sleep(0.05)
        raise Breach(f"the note {note.key} is " + (f"there more than once: {paths}" if paths else "lost"))

    def contents(self, note):
        """What a note's file holds now."""
        for _ in range(100):
            try:
                return self.read(self.path(note))
            except FileNotFoundError:  # moved in between
                continue
        raise Breach(f"the note {note.key} can't be found")

    def check(self, note, must_be_whole=False):
        text = self.contents(note)
        if not note.allows(text):
            raise Breach(f"{self.path(note)} holds {shorten(text)}, which nobody wrote there; it should hold "
                         + " or ".join(shorten(base) for base in note.bases) + (f" and behind it {shorten(note.typed)}" if note.typed else ""))
        is_whole = note.is_whole(text)
        late = note.processed is not None and time.monotonic() - note.processed > PATIENCE
        if not is_whole and (late or must_be_whole):
            raise Breach(f"{self.path(note)} lacks a text that was typed "
                         f"{time.monotonic() - note.processed:.1f} s ago: it holds {shorten(text)}, typed was {shorten(note.typed)}")
        if is_whole and note.processed is not None and not note.may_shrink:
            note.settle(text)

    def check_all(self):
        for note in self.notes.values():
            self.check(note)

    def check_after_the_end(self, moment, all_saved):
        """After the process ended: what was typed long enough before must be there, with `all_saved` all of it. What is
        there now is the text from which the next process starts."""
        for note in self.notes.values():
            saved = note.processed is not None and (all_saved or moment - note.processed > SAVED_AFTER)
            self.check(note, must_be_whole=saved)
            note.settle(self.contents(note))
            note.may_shrink = False
