"""The program as a whole: notes on disk, the list, typing, saving, other programs, signals, a second start."""

import os
import resource
import signal
import unittest

from desktop import DesktopTest
from screen import wait_for


class Spine(DesktopTest):
    def write_folder(self):
        """Notes of all formats and two sub-folders; the order by title tells where each belongs."""
        for extension in ("txt", "md", "json", "csv", "html", "css", "js", "php"):
            self.write(f"Nota {extension}.{extension}", f"testo {extension}\n")
        self.write("Lavoro/Riunione.md", "# Riunione\n")
        self.write("Viaggi/Lisbona.md", "# Lisbona\n")
        self.preferences["sortOrder"] = "title"

    top_level = ["Nota css", "Nota csv", "Nota html", "Nota js", "Nota json", "Nota md", "Nota php", "Nota txt"]
    folders = ["Lavoro", "Riunione", "Viaggi", "Lisbona"]

    def test_lists_notes_of_all_formats_under_their_headings(self):
        self.write_folder()
        program = self.start()
        program.expect_rows(self.folders + ["Note"] + self.top_level)

    def test_typing_reaches_the_file_and_keeps_the_creation_date(self):
        self.write_folder()
        created = self.created("Nota md.md")
        program = self.start()
        program.expect_rows(self.folders + ["Note"] + self.top_level)
        program.open_note("Nota md")
        program.keys("ctrl+End")
        program.type("una riga nuova")
        wait_for("the saved text", lambda: self.read("Nota md.md") == "testo md\nuna riga nuova", seconds=2)
        self.assertEqual(self.created("Nota md.md"), created)

    def test_another_program_replaces_creates_deletes_and_renames(self):
        self.write_folder()
        program = self.start()
        program.expect_rows(self.folders + ["Note"] + self.top_level)
        program.open_note("Nota txt")

        self.write("nuovo.tmp", "sostituita\n")
        os.rename(self.notes + "/nuovo.tmp", self.notes + "/Nota txt.txt")
        self.write("Altra.md", "creata da fuori\n")
        os.remove(self.notes + "/Nota php.php")
        os.rename(self.notes + "/Viaggi", self.notes + "/Mete")
        top_level = ["Altra"] + [name for name in self.top_level if name != "Nota php"]
        program.expect_rows(["Lavoro", "Riunione", "Mete", "Lisbona", "Note"] + top_level)

        # The window shows the new text: what is typed behind it is saved behind it.
        program.keys("ctrl+End")
        program.type("e ampliata")
        wait_for("the saved text", lambda: self.read("Nota txt.txt") == "sostituita\ne ampliata")

    def test_a_dirty_note_survives_a_folder_that_goes_away_and_a_change_by_another_program(self):
        self.write("Nota.md", "prima\n")
        program = self.start()
        program.expect_rows(["Oggi", "Nota"])
        program.open_note("Nota")
        program.keys("ctrl+End")

        # As when a volume is unmounted: the save fails, says so, and the text stays dirty.
        os.rename(self.notes, self.notes + " altrove")
        program.type("scritta a mano")
        wait_for("the alert", lambda: program.find("alert"))
        program.keys("Return")
        wait_for("the alert to go", lambda: not program.find("alert"))
        with open(self.notes + " altrove/Nota.md", "w", encoding="utf-8") as file:
            file.write("di un altro\n")
        os.rename(self.notes + " altrove", self.notes)

        program.expect_rows(["Oggi", "Nota"])
        program.type("!")
        wait_for("the typed text", lambda: self.read("Nota.md") == "prima\nscritta a mano!")

        # Nor does a text that can't be saved hold back the end.
        os.rename(self.notes, self.notes + " altrove")
        program.type("?")
        wait_for("the alert", lambda: program.find("alert"))
        program.keys("Return")
        wait_for("the alert to go", lambda: not program.find("alert"))
        wait_for("the focus", program.is_active)
        program.keys("ctrl+q")
        self.assertEqual(program.process.wait(timeout=20), 0)

    def test_a_file_that_may_not_grow_is_a_failed_save(self):
        self.write("Nota.md", "")
        program = self.start_with_one_note("Nota")
        limits = resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE)
        resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE, (0, limits[1]))
        program.type("a")
        wait_for("the alert", lambda: program.find("alert"))
        resource.prlimit(program.process.pid, resource.RLIMIT_FSIZE, limits)
        program.keys("Return")
        wait_for("the alert to go", lambda: not program.find("alert"))
        wait_for("the focus", program.is_active)
        program.type("b")
        wait_for("the typed text", lambda: self.read("Nota.md") == "ab")

    def test_every_end_saves_unsaved_text(self):
        ends = {number.name: lambda program, number=number: program.process.send_signal(number)
                for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)}
        ends["the command"] = lambda program: program.keys("ctrl+q")
        for name, end in ends.items():
            with self.subTest(end=name):
                self.write("Nota.md", "")
                program = self.start()
                program.expect_rows(["Oggi", "Nota"])
                program.open_note("Nota")
                program.type("appena scritto")
                end(program)
                self.assertEqual(program.process.wait(timeout=20), 0)
                self.assertEqual(self.read("Nota.md"), "appena scritto")

    def test_a_second_start_activates_the_first(self):
        self.write("Nota.md", "testo\n")
        program = self.start()
        program.expect_rows(["Oggi", "Nota"])
        program.keys("ctrl+w")
        wait_for("the window to close", lambda: program.find_window() is None)
        self.assertEqual(program.start_again(), 0)
        program.window = wait_for("the window", program.find_window)
        wait_for("the focus", program.is_active)
        self.assertIsNone(program.process.poll())

    def test_a_note_that_becomes_a_folder_leaves_the_notes(self):
        self.write("Nota.md", "testo")
        program = self.start()
        program.expect_rows(["Oggi", "Nota"])
        os.remove(self.notes + "/Nota.md")
        os.mkdir(self.notes + "/Nota.md")
        program.expect_rows(["Nota.md"])
        self.assertIsNone(program.process.poll())

    def test_hostile_names_and_a_new_note(self):
        for name in (b"a\nb.md", b"-rf.md", b"latin-\xe8.txt", "e\u0301.md".encode(), "\u00e9.md".encode(), b"x" * 252 + b".md"):
            with open(os.fsencode(self.notes) + b"/" + name, "w", encoding="utf-8") as file:
                file.write("testo\n")
        self.preferences["sortOrder"] = "title"
        program = self.start()
        wait_for("six rows", lambda: len(program.rows()) == 6)
        self.assertIn("a b", program.rows())
        self.assertIn("latin-\ufffd", program.rows())
        program.open_note("latin-\ufffd")
        program.keys("ctrl+Home")
        program.type("nuovo ")
        wait_for("the saved text", lambda: self.read("latin-\udce8.txt") == "nuovo testo\n")
        program.keys("ctrl+n")
        wait_for("seven rows", lambda: len(program.rows()) == 7)
        program.type("di getto")
        wait_for("the new file", lambda: any(self.read(name) == "di getto" for name in os.listdir(self.notes)
                                             if name.startswith("Nota ")))

    def test_search_narrows_the_list(self):
        self.write_folder()
        program = self.start()
        program.expect_rows(self.folders + ["Note"] + self.top_level)
        program.keys("ctrl+k")
        program.type("TESTO J")
        program.expect_rows(["Nota js", "Nota json"])
        program.keys("Escape")
        program.expect_rows(self.folders + ["Note"] + self.top_level)


if __name__ == "__main__":
    unittest.main()
