"""The commands on notes and folders, by keys in the running program: what they leave on disk, in the trash and in the
list."""

import glob
import os
import unittest
import urllib.parse

from desktop import DesktopTest
from screen import wait_for


class Commands(DesktopTest):
    def setUp(self):
        super().setUp()
        self.preferences["sortOrder"] = "title"

    def start_with(self, *names):
        for name in names:
            self.write(name, "testo di " + name)
        program = self.start()
        program.expect_rows([os.path.splitext(name)[0] for name in names])
        return program

    @staticmethod
    def choose(program, *path):
        """Chooses a command in the menus, for keys that window managers take for themselves."""
        for name in path:
            program.click_button(name, "menu item")

    def files(self):
        return sorted(os.path.relpath(path, self.notes) for path in
                      glob.glob(self.notes + "/**/*", recursive=True) if os.path.isfile(path))

    def expect_files(self, *expected):
        try:
            wait_for("the files", lambda: self.files() == sorted(expected))
        except AssertionError:
            raise AssertionError(f"the files are {self.files()}, expected {expected}") from None

    # The trash, as a file manager reads it.

    def trashed(self):
        """The paths of what lies in the trash, by the paths that it had."""
        trash = self.home + "/data/Trash"
        found = {}
        for record in glob.glob(trash + "/info/*.trashinfo"):
            with open(record, encoding="utf-8") as file:
                lines = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
            name = os.path.basename(record).removesuffix(".trashinfo")
            found[urllib.parse.unquote(lines["Path"])] = (f"{trash}/files/{name}", record)
        return found

    def restore(self, path):
        file, record = self.trashed()[path]
        os.rename(file, path)
        os.remove(record)

    def test_makes_and_renames_a_note(self):
        program = self.start_with("a.md")
        program.keys("ctrl+n")
        wait_for("a second file", lambda: len(self.files()) == 2)
        program.type("di getto")
        program.keys("ctrl+r")
        wait_for("the field", lambda: program.find("text", "Titolo della nota"))
        program.type("Lista")
        program.keys("Return")
        wait_for("the title", lambda: program.title() == "Lista")
        self.expect_files("Lista.md", "a.md")
        self.assertEqual(self.read("Lista.md"), "di getto")
        program.expect_rows(["a", "Lista"])

        # The text is the same one as before, with what can be undone of it.
        program.type("!")
        wait_for("the saved text", lambda: self.read("Lista.md") == "di getto!")

    def test_groups_a_note_in_a_new_folder_and_places_it_by_hand(self):
        program = self.start_with("a.md", "b.md", "c.md")
        program.open_note("b")
        self.choose(program, "Nota", "Sposta nota in su")
        program.expect_rows(["b", "a", "c"])
        self.choose(program, "Nota", "Sposta nota in giù")
        program.expect_rows(["a", "b", "c"])
        program.keys("ctrl+g")
        self.expect_files("Nuova cartella/b.md", "a.md", "c.md")
        wait_for("the field of its name", lambda: program.find("text", "Nuova cartella") or program.find("text"))
        program.type("Casa")
        program.keys("Return")
        self.expect_files("Casa/b.md", "a.md", "c.md")
        program.expect_rows(["Casa", "b", "Note", "a", "c"])

    def test_moves_a_note_to_the_trash_from_where_it_can_be_restored(self):
        program = self.start_with("a.md", "b è qui.md", "c.md")
        program.open_note("b è qui")
        program.keys("ctrl+End")
        program.type(" e altro")
        program.keys("ctrl+shift+BackSpace")
        wait_for("the question", lambda: program.find("push button", "Sposta nel Cestino"))
        program.keys("Escape")
        wait_for("the end of the question", lambda: not program.find("push button", "Sposta nel Cestino"))
        self.assertEqual(self.trashed(), {})

        program.keys("ctrl+shift+BackSpace")
        wait_for("the question", lambda: program.find("push button", "Sposta nel Cestino"))
        program.keys("Return")
        program.expect_rows(["a", "c"])
        self.assertEqual(list(self.trashed()), [self.notes + "/b è qui.md"])
        wait_for("the next note", lambda: program.title() == "c")

        self.restore(self.notes + "/b è qui.md")
        program.expect_rows(["a", "b è qui", "c"])
        self.assertEqual(self.read("b è qui.md"), "testo di b è qui.md e altro")

    def test_imports_a_file(self):
        program = self.start_with("a.md")
        outside = self.home + "/foto.JPG"
        with open(outside, "w", encoding="utf-8") as file:
            file.write("di un altro")
        program.keys("ctrl+o")
        wait_for("the panel", lambda: program.find("push button", "Importa"))
        program.type(outside)
        program.keys("Return")
        program.expect_rows(["a", "foto"])
        wait_for("the imported note", lambda: program.title() == "foto")
        self.assertEqual(self.read("foto.txt"), "di un altro")
        self.assertTrue(os.path.exists(outside))

    def test_saves_a_note_elsewhere(self):
        program = self.start_with("a.md", "b.md")
        program.open_note("b")
        program.keys("ctrl+shift+s")
        wait_for("the panel", lambda: program.find("file chooser") or program.find("dialog"))
        program.keys("ctrl+a")
        program.type(self.home + "/copia.txt")
        program.keys("Return")
        wait_for("the copy", lambda: os.path.exists(self.home + "/copia.txt"))
        with open(self.home + "/copia.txt", encoding="utf-8") as file:
            self.assertEqual(file.read(), "testo di b.md")
        self.assertEqual(self.files(), ["a.md", "b.md"])
        self.assertEqual(program.title(), "b")


if __name__ == "__main__":
    unittest.main()
