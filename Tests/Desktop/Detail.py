"""The right side of the window: title, format, preview, copying, zoom, several selected notes, and the questions before
something goes to the Trash."""

import os
import unittest

from desktop import DesktopTest
from program import EDITOR
from screen import held, wait_for


class Detail(DesktopTest):
    def begin(self, *rows):
        self.preferences["sortOrder"] = "title"
        program = self.start()
        program.expect_rows(list(rows))
        return program

    def exists(self, name):
        return os.path.exists(os.path.join(self.notes, name))

    def trashed(self, name):
        return os.path.exists(os.path.join(self.home, "data/Trash/files", name))

    def test_renames_through_the_title_and_goes_on_in_the_text(self):
        self.write("Nota.md", "testo\n")
        program = self.begin("Nota")
        program.click_button("Nota")
        wait_for("the field", lambda: program.find("text", "Titolo della nota"))
        program.type("Altra")
        program.keys("Return")
        wait_for("the new name", lambda: self.exists("Altra.md") and not self.exists("Nota.md"))
        wait_for("the title", lambda: program.title() == "Altra")
        program.keys("ctrl+End")
        program.type("ancora")
        wait_for("the saved text", lambda: self.read("Altra.md") == "testo\nancora")

    def test_escape_keeps_the_name(self):
        self.write("Nota.md", "testo\n")
        program = self.begin("Nota")
        program.keys("ctrl+r")
        wait_for("the field", lambda: program.find("text", "Titolo della nota"))
        program.type("Altra")
        program.keys("Escape")
        wait_for("the field to go", lambda: not program.find("text", "Titolo della nota"))
        program.type("x")
        wait_for("the saved text", lambda: "x" in self.read("Nota.md"))
        self.assertFalse(self.exists("Altra.md"))

    def test_changes_the_format_by_the_menu(self):
        self.write("Nota.md", "testo\n")
        program = self.begin("Nota")
        program.click_button("Formato della nota")
        wait_for("the menu", lambda: len(program.windows()) > 1)
        program.keys("Down", "Down", "Down", "Down", "Return")
        wait_for("the new format", lambda: self.exists("Nota.csv") and not self.exists("Nota.md"))

    def test_copies_zooms_and_shows_the_preview_by_buttons(self):
        self.write("Nota.md", "testo\n")
        program = self.begin("Nota")
        program.click_button("Copia il contenuto negli appunti (⌥⌘C)")
        program.keys("ctrl+End", "ctrl+v")
        wait_for("the pasted copy", lambda: self.read("Nota.md") == "testo\ntesto\n")

        program.click_button("Ingrandisci testo (⌘+)  ·  anche pizzicando il trackpad")
        wait_for("the larger text", lambda: self.preference("fontSize") == 14)
        program.click_button("Riduci testo (⌘−)")
        wait_for("the smaller text", lambda: self.preference("fontSize") == 13)
        program.click_button("Ingrandisci testo (⌘+)  ·  anche pizzicando il trackpad")
        program.click_button("Dimensione predefinita (⌘0)")
        wait_for("the default size", lambda: self.preference("fontSize") == 13)

        program.click_button("Anteprima formattata (⇧⌘P)")
        program.click_button("Torna all'editor (⇧⌘P)")
        wait_for("the editor", lambda: program.find("text", EDITOR))

    def test_the_keyboard_alone_answers_before_a_note_goes_to_the_trash(self):
        self.write("Prima.md", "uno\n")
        self.write("Seconda.md", "due\n")
        program = self.begin("Prima", "Seconda")
        program.keys("shift+ctrl+BackSpace")
        wait_for("the question", lambda: program.find("dialog", "Spostare «Prima» nel Cestino?"))
        program.keys("Escape")
        wait_for("the question to go", lambda: not program.find("dialog"))
        self.assertTrue(self.exists("Prima.md"))

        wait_for("the focus", program.is_active)
        program.keys("shift+ctrl+BackSpace")
        wait_for("the default answer", lambda: program.has_focus("push button", "Sposta nel Cestino"))
        program.keys("Return")
        program.expect_rows(["Seconda"])
        wait_for("the file in the Trash", lambda: self.trashed("Prima.md"))

    def test_the_keyboard_alone_deletes_a_folder_and_keeps_its_notes(self):
        self.write("Lavoro/Riunione.md", "testo\n")
        self.write("Nota.md", "testo\n")
        program = self.begin("Lavoro", "Riunione", "Note", "Nota")
        program.click_row("Lavoro")
        program.expect_rows(["Lavoro", "Note", "Nota"])
        program.keys("Delete")
        wait_for("the question", lambda: program.find("dialog", "Eliminare la cartella «Lavoro»?"))
        wait_for("the focus on cancelling", lambda: program.has_focus("push button", "Annulla"))
        program.keys("Tab")
        wait_for("the focus on keeping", lambda: program.has_focus("push button", "Elimina la cartella, tieni le note"))
        program.keys("Return")
        program.expect_rows(["Nota", "Riunione"])
        self.assertTrue(self.exists("Riunione.md"))
        self.assertFalse(self.exists("Lavoro"))

    def test_two_selected_notes_are_compared_and_seven_are_grouped(self):
        titles = [f"Nota {number}" for number in range(1, 9)]
        for title in titles:
            self.write(title + ".md", f"testo di {title}\n")
        program = self.begin(*titles)
        program.click_row("Nota 1")
        with held("ctrl"):
            program.click_row("Nota 2")
        wait_for("the panel", lambda: program.find("push button", "Confronta differenze"))
        self.display.picture("Detail.two")
        program.keys("Return")
        wait_for("the comparison", lambda: program.find("label", "Confronto"))
        program.keys("Escape")
        wait_for("the editor", lambda: program.find("text", EDITOR))

        program.click_row("Nota 1")
        with held("shift"):
            program.click_row("Nota 7")
        wait_for("the panel", lambda: program.find("label", "7 note selezionate"))
        line = " · ".join(titles[:6]) + " · …"
        wait_for("the titles", lambda: program.find("label", line))
        self.display.picture("Detail.seven")
        program.keys("Return")
        wait_for("the new folder", lambda: any(
            os.path.isdir(os.path.join(self.notes, name)) and len(os.listdir(os.path.join(self.notes, name))) == 7
            for name in os.listdir(self.notes)))


if __name__ == "__main__":
    unittest.main()
