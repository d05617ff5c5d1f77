"""What tests of the whole program start from: a display, a home with a folder of notes, and the world around it."""

import json
import os
import shlex
import subprocess
import tempfile
import unittest

from program import EDITOR, Quillary
from screen import Display, wait_for

INSPECT = os.environ["QUILLARY_INSPECT"]

# What a program does with its signals.
SIGNALS = ["grep", "^Sig[BI]", "/proc/self/status"]

# Stands for the program with which the desktop opens files and addresses.
OPENER = f"""#!/bin/sh
printf '%s\\n' "$@" >> "$QUILLARY_OPENED"
exec {shlex.join(SIGNALS)} > "$QUILLARY_OPENED.signals"
"""


def inspect(*requests):
    """The answers of the inspection program."""
    lines = "".join(json.dumps(request) + "\n" for request in requests)
    done = subprocess.run([INSPECT], input=lines, capture_output=True, text=True, check=True)
    return [json.loads(line) for line in done.stdout.splitlines()]


class DesktopTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = Display()
        cls.addClassCleanup(cls.display.close)

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

    def start_with_one_note(self, title):
        """Starts with the only note, whose text has the keyboard."""
        program = self.start()
        program.expect_rows(["Oggi", title])
        wait_for("the text", lambda: program.find("text", EDITOR))
        wait_for("the focus", program.is_active)
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

    def preference(self, key):
        """What the program has stored; none if it has stored nothing."""
        with open(self.home + "/config/quillary/preferences.json", encoding="utf-8") as file:
            return json.load(file).get(key)

    # The world around the program

    def set_environment(self, name, value):
        """Of programs that are started from now on, until the end of the test."""
        before = os.environ.get(name)
        os.environ[name] = value
        self.addCleanup(lambda: os.environ.pop(name) if before is None else os.environ.update({name: before}))

    def replace_opener(self):
        """Opens nothing any more, and writes down instead what was to be opened."""
        programs = self.home + "/desktop"
        os.mkdir(programs)
        opener = programs + "/xdg-open"
        with open(opener, "w", encoding="utf-8") as file:
            file.write(OPENER)
        os.chmod(opener, 0o755)
        self.set_environment("QUILLARY_OPENED", self.home + "/opened")
        self.set_environment("PATH", programs + os.pathsep + os.environ["PATH"])

    def opened(self):
        """The files and addresses that were to be opened."""
        try:
            with open(self.home + "/opened", encoding="utf-8") as file:
                return file.read().splitlines()
        except FileNotFoundError:
            return []

    def opener_signals(self):
        """What the program that opens does with its signals; nothing until it has opened."""
        try:
            with open(self.home + "/opened.signals", encoding="utf-8") as file:
                return file.read()
        except FileNotFoundError:
            return ""
