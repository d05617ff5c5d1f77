"""Previews in the whole program: links that are clicked, and JSON that is formatted and unformatted."""

import subprocess
import unittest

from desktop import SIGNALS, DesktopTest
from program import EDITOR, Atspi, extents, has_state
from screen import wait_for


class Previews(DesktopTest):
    def setUp(self):
        super().setUp()
        self.replace_opener()
        self.preferences["sortOrder"] = "title"

    def open_note(self, title):
        program = self.start()
        program.open_note(title)
        return program

    @staticmethod
    def click_named(program, name):
        program.click_node(wait_for(name, lambda: program.find_named(name)))

    def page(self, program):
        """The text of the Markdown preview; nothing while it is not on show."""
        page = program.find_named("Anteprima Markdown")
        return Atspi.Text.get_text(page, 0, -1) if page else ""

    def show_preview(self, program):
        self.click_named(program, "Anteprima formattata (⇧⌘P)")

    def show_editor(self, program):
        self.click_named(program, "Torna all'editor (⇧⌘P)")

    def click_text(self, program, text):
        """Clicks in the middle of a text of the Markdown preview."""
        page = wait_for("the page", lambda: program.find_named("Anteprima Markdown"))
        offset = wait_for(text, lambda: Atspi.Text.get_text(page, 0, -1).find(text) + 1) - 1
        place = Atspi.Text.get_character_extents(page, offset + len(text) // 2, Atspi.CoordType.SCREEN)
        program.click(place.x + place.width // 2, place.y + place.height // 2)

    def top_of(self, program, text):
        page = program.find_named("Anteprima Markdown")
        offset = Atspi.Text.get_text(page, 0, -1).find(text)
        place = Atspi.Text.get_character_extents(page, offset, Atspi.CoordType.SCREEN)
        return place.y - extents(page).y

    def test_links_lead_to_places_notes_files_and_the_web(self):
        body = "Un capoverso qualunque.\n\n" * 80
        self.write("Indice.md", "# Indice\n\n[giù](#la-meta)\n\n[nota](Altra.md)\n\n[manca](Assente.md)\n\n"
                                "[immagine](foto.png)\n\n[rete](https://esempio.it/a?b=c)\n\n" + body
                   + "## La meta\n\n" + body)
        self.write("Altra.md", "# Altra nota\n\n[indietro](Indice.md)\n")
        self.write("foto.png", "x")
        program = self.open_note("Indice")
        self.show_preview(program)
        wait_for("the page", lambda: self.page(program).startswith("Indice\n\ngiù"))

        self.click_text(program, "rete")
        wait_for("the opened address", lambda: self.opened() == ["https://esempio.it/a?b=c"])

        self.click_text(program, "immagine")
        wait_for("the opened file", lambda: len(self.opened()) == 2)
        self.assertTrue(self.opened()[1].endswith(self.notes + "/foto.png"), self.opened())

        self.click_text(program, "manca")
        self.click_text(program, "nota")
        wait_for("the other note", lambda: program.title() == "Altra")
        wait_for("its page", lambda: self.page(program).startswith("Altra nota"))
        self.assertEqual(len(self.opened()), 2)

        self.click_text(program, "indietro")
        wait_for("the first note", lambda: program.title() == "Indice")
        wait_for("its page", lambda: self.page(program).startswith("Indice"))
        self.click_text(program, "giù")
        wait_for("the place", lambda: abs(self.top_of(program, "La meta")) < 12)

    def test_the_program_that_opens_a_link_has_its_signals_like_any_other(self):
        self.write("Indice.md", "[rete](https://esempio.it)\n")
        program = self.open_note("Indice")
        self.show_preview(program)
        wait_for("the page", lambda: self.page(program).startswith("rete"))
        self.click_text(program, "rete")
        usual = subprocess.run(SIGNALS, capture_output=True, text=True, check=True).stdout
        self.assertEqual(wait_for("the opened address", self.opener_signals), usual)

    def test_key_and_button_lead_to_the_preview_and_back(self):
        self.write("Nota.md", "# Titolo\n\ntesto\n")
        self.write("Semplice.txt", "testo\n")
        program = self.open_note("Nota")
        program.keys("shift+ctrl+p")
        wait_for("the page", lambda: self.page(program) == "Titolo\n\ntesto")
        self.assertIsNone(program.find("text", EDITOR))
        program.keys("shift+ctrl+p")
        wait_for("the editor", lambda: program.find("text", EDITOR))
        program.keys("ctrl+Home")
        program.type("1")
        wait_for("the typed text", lambda: self.read("Nota.md").startswith("1"))

        self.show_preview(program)
        wait_for("the page with what was typed", lambda: self.page(program).startswith("1# Titolo"))
        self.show_editor(program)
        wait_for("the editor", lambda: program.find("text", EDITOR))
        program.keys("ctrl+Home", "Delete")
        wait_for("the text as it was", lambda: self.read("Nota.md").startswith("#"))

        # A note without a preview keeps its editor, by key as by button.
        program.open_note("Semplice")
        button = wait_for("the button", lambda: program.find_named("Anteprima formattata (⇧⌘P)"))
        wait_for("the disabled button", lambda: not has_state(button, "ENABLED"))
        self.click_named(program, EDITOR)
        program.keys("shift+ctrl+p", "ctrl+End")
        program.type("x")
        wait_for("the typed text", lambda: self.read("Semplice.txt") == "testo\nx")

    def test_formats_json_in_the_preview_and_undoes_it_in_the_editor(self):
        self.write("Dati.json", '{"b":[1,2],"a":{}}')
        program = self.open_note("Dati")
        self.show_preview(program)
        wait_for("the summary", lambda: program.find_named("Oggetto · 2 chiavi"))
        self.click_named(program, "Formatta testo")
        formatted = '{\n  "b": [\n    1,\n    2\n  ],\n  "a": {}\n}'
        wait_for("the formatted file", lambda: self.read("Dati.json") == formatted)

        self.show_editor(program)
        wait_for("the editor", lambda: not program.find_named("Formatta testo"))
        program.keys("ctrl+z")
        wait_for("the file as it was", lambda: self.read("Dati.json") == '{"b":[1,2],"a":{}}')

    def test_follows_another_program(self):
        self.write("Tabella.csv", "nome,anni\nAda,36\n")
        program = self.open_note("Tabella")
        self.show_preview(program)
        wait_for("the summary", lambda: program.find_named("1 righe · 2 colonne · separatore «,»"))
        self.write("Tabella.csv", "nome,anni\nAda,36\nAlan,41\n")
        wait_for("the new summary", lambda: program.find_named("2 righe · 2 colonne · separatore «,»"))
        self.click_named(program, "Prima riga come intestazione")
        wait_for("the row more", lambda: program.find_named("3 righe · 2 colonne · separatore «,»"))


if __name__ == "__main__":
    unittest.main()
