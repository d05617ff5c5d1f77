"""What other programs do in the directory of the notes, and what the computer does with all of them."""

import os
import signal
import threading
import time

from oracle import Note
from user import FEWEST_NOTES, MOST_NOTES, User

EXTENSIONS = ("md", "txt", "md", "json", "csv", "html")
LONG_TEXT = 4_000


class Others(User):
    def foreign_text(self):
        """A whole text as other programs write them: all line ends, and what must survive untouched."""
        ends = self.random.choice(("\n", "\n", "\r\n", "\r", "\u2028"))
        lines = [" ".join(self.word() for _ in range(self.random.randint(0, 8))) for _ in range(self.random.randint(0, 30))]
        lines += ["\u00a0è perciò 👩‍👩‍👧 e\u0301", "NUL \0 e \ufffe", "# Titolo", "- [ ] da fare"]
        self.random.shuffle(lines)
        text = ends.join(lines)
        return text * 400 if self.random.random() < 0.03 else text

    def write(self, path, text):
        with open(os.path.join(self.directory, path), "w", encoding="utf-8", newline="") as file:
            file.write(text)

    def write_atomically(self, path, text):
        self.write(".altro-programma", text)
        os.rename(self.directory + "/.altro-programma", os.path.join(self.directory, path))

    def folders(self):
        with os.scandir(self.directory) as entries:
            return sorted(entry.name for entry in entries if entry.is_dir() and not entry.name.startswith("."))

    def let_the_program_notice(self):
        """A note whose file has gone takes what is typed into it along, and one that was renamed is another note: the user
        goes on when the list shows it."""
        time.sleep(0.5)
        self.wait_for_input()

    def make_foreign_note(self):
        note = Note(self.new_key(), self.foreign_text())
        folder = self.random.choice(["", "", *self.folders()])
        self.write_atomically(os.path.join(folder, f"{note.key} {self.word()}.{self.random.choice(EXTENSIONS)}"), note.text)
        self.oracle.notes[note.key] = note

    def step_foreign_write(self):
        for _ in range(self.random.randint(1, 4)):
            note = self.any_note()
            self.settle(note)
            time.sleep(0.02)
            text = self.foreign_text()
            if self.random.random() < 0.3 and len(note.text) < LONG_TEXT:
                text = note.text + text
            write = self.random.choice((self.write, self.write_atomically))
            path = self.oracle.path(note)
            note.replace(text)
            write(path, text)

    def step_foreign_write_while_typing(self):
        """The user's text wins, or else the other one is there whole."""
        note = self.any_note()
        self.select(note)
        self.settle(note)
        time.sleep(0.02)
        text = self.foreign_text()
        path = self.oracle.path(note)
        self.keys("ctrl+End")
        token = self.token()
        note.replace(text)
        note.type(token)
        self.write_atomically(path, text)
        self.program.type(token)
        self.wait_for_input()
        note.processed = time.monotonic()

    def step_foreign_note(self):
        if len(self.oracle.notes) < MOST_NOTES:
            self.make_foreign_note()
            # The search for a note that the list doesn't show yet makes one.
            self.let_the_program_notice()

    def step_foreign_deletion(self):
        if len(self.oracle.notes) <= FEWEST_NOTES:
            return
        note = self.any_note()
        self.settle(note)
        path = self.oracle.path(note)
        del self.oracle.notes[note.key]
        os.remove(os.path.join(self.directory, path))

    def step_foreign_move(self):
        note = self.any_note()
        self.settle(note)
        path = self.oracle.path(note)
        folder = self.random.choice(["", *self.folders()])
        name = f"{note.key} {self.word()}{os.path.splitext(path)[1]}"
        os.rename(os.path.join(self.directory, path), os.path.join(self.directory, folder, name))
        self.let_the_program_notice()

    def step_foreign_folders(self):
        """A folder gets another name, and those that the user made are emptied and removed."""
        self.settle_all()
        for folder in self.folders():
            place = os.path.join(self.directory, folder)
            if folder.startswith("Nuova cartella"):
                for name in os.listdir(place):
                    os.rename(os.path.join(place, name), os.path.join(self.directory, name))
                os.rmdir(place)
            elif self.random.random() < 0.4:
                os.rename(place, os.path.join(self.directory, f"{folder.split(' ')[0]} {self.random.randint(1, 99)}"))
        self.let_the_program_notice()

    def step_storm(self):
        """A thousand changes in about a second, while the user types."""
        note = self.any_note()
        self.select(note)
        token = self.token()
        self.keys("ctrl+End")
        note.type(token)
        storm = threading.Thread(target=self.storm, args=(self.random.randint(100, 200),))
        storm.start()
        try:
            self.program.type(token)
        finally:
            storm.join()
        self.wait_for_input()
        note.processed = time.monotonic()
        self.settle(note)

    def storm(self, files):
        for number in range(files):
            name = f"tempesta {number}"
            self.write(f"{name}.md", name)
            self.write_atomically(f"{name}.md", name * 2)
            os.rename(f"{self.directory}/{name}.md", f"{self.directory}/{name}.txt")
            os.utime(f"{self.directory}/{name}.txt", (number, number + 2**31))
            time.sleep(0.003)
        for number in range(files):
            os.remove(f"{self.directory}/tempesta {number}.txt")

    def step_vanish(self):
        """The directory goes away, the user types on, and it comes back."""
        note = self.any_note()
        self.select(note)
        self.settle_all()
        away = self.home + "/via"
        os.rename(self.directory, away)
        try:
            time.sleep(self.random.uniform(0, 0.8))
            self.type_behind(note, self.token())
            time.sleep(self.random.uniform(0, 1))
        finally:
            os.rename(away, self.directory)
        # A note whose save failed is saved again after the next edit.
        self.select(note)
        self.type_behind(note, self.token())
        self.settle(note)

    def step_sleep(self):
        """As a computer that is closed and opened again, with a text that is not saved or with files that others write."""
        process = self.program.process
        others_write = self.random.random() < 0.5
        if others_write:
            # Who writes a file waits for the text in it to be saved, which a program that sleeps never does.
            self.settle_all()
        process.send_signal(signal.SIGSTOP)
        time.sleep(self.random.uniform(0.2, 2))
        if others_write:
            self.step_foreign_write()
        process.send_signal(signal.SIGCONT)
        self.wait_for_input()
