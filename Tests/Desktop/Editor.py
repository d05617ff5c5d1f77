"""The editor in the whole program: typing, undoing, changing notes, zooming, wrapping, dragging text, and how it looks."""

import unittest

from desktop import DesktopTest
from program import EDITOR, Atspi, middle
from screen import drag, held, wait_for, xdotool

SOURCES = {
    "Dati.json": '{\n  "nome": "Anna",\n  "anni": 31,\n  "vera": true,\n  "altro": null,\n  "elenco": [1, 2.5, -3e4]\n}\n',
    "Pagina.html": '<!DOCTYPE html>\n<html lang="it">\n<!-- commento -->\n<style>p { color: #123456; }</style>\n'
                   '<p class="riga">Testo &amp; altro</p>\n<script>const a = "b"; // commento\n</script>\n</html>\n',
    "Stile.css": '/* commento */\n@media print {\n  .riga > a:hover { color: #ff8800; margin: 4px auto !important; }\n}\n',
    "Codice.js": '// commento\nimport { a } from "./a.js";\nasync function somma(x, y) {\n  const z = `testo ${x}`;\n'
                 '  return x + y * 0x1f;\n}\nclass Nota extends Base { valore = null; }\n',
    "Script.php": '<p><?php\n// commento\nfunction saluta(string $nome): string {\n  $testo = "ciao";\n'
                  '  return strtoupper($testo) . $nome . 42;\n}\n?></p>\n',
    "Testo.md": "# Lista\n\nUna *prova* con `codice` e un [legame](https://example.org/a).\n\n- primo\n- altro\n",
}


def turn_wheel(place, notches):
    """Turns the wheel with Ctrl held, away from the user if positive."""
    with held("ctrl"):
        xdotool("mousemove", *place, "click", "--repeat", abs(notches), "--delay", 8, 4 if notches > 0 else 5)


class Editor(DesktopTest):
    def open(self, program, title):
        program.open_note(title)
        # Until the note is on show, too.
        wait_for("the text view", lambda: self.view(program))

    @staticmethod
    def view(program):
        return program.find("text", EDITOR)

    def text(self, program):
        view = self.view(program)
        return Atspi.Text.get_text(view, 0, Atspi.Text.get_character_count(view))

    def place(self, program, offset):
        place = Atspi.Text.get_character_extents(self.view(program), offset, Atspi.CoordType.SCREEN)
        return place.x + 1, place.y + place.height // 2

    def expect_text(self, program, expected):
        wait_for(f"the text {expected!r}", lambda: self.text(program) == expected)

    def test_undo_is_kept_over_visits_to_other_notes(self):
        self.preferences["sortOrder"] = "title"
        self.write("Prima.txt", "prima\n")
        self.write("Seconda.txt", "seconda\n")
        program = self.start()
        self.open(program, "Prima")
        program.keys("ctrl+End")
        program.type("uno")
        self.expect_text(program, "prima\nuno")
        self.open(program, "Seconda")
        program.keys("ctrl+End")
        program.type("due")
        self.expect_text(program, "seconda\ndue")
        program.keys("ctrl+z")
        self.expect_text(program, "seconda\n")
        self.open(program, "Prima")
        program.type(" e tre")
        self.expect_text(program, "prima\nuno e tre")
        program.keys("ctrl+z")
        self.expect_text(program, "prima\nuno")
        program.keys("ctrl+z")
        self.expect_text(program, "prima\n")
        program.keys("ctrl+shift+z")
        self.expect_text(program, "prima\nuno")
        wait_for("the files", lambda: (self.read("Prima.txt"), self.read("Seconda.txt")) == ("prima\nuno", "seconda\n"))

    def test_the_wheel_zooms_and_lines_wrap(self):
        self.write("Lunga.txt", "parola " * 200 + "\nfine")
        program = self.start()
        self.open(program, "Lunga")
        height = lambda: self.place(program, 1403)[1] - self.place(program, 0)[1]
        before = height()
        self.assertGreater(before, 20)
        turn_wheel(self.place(program, 0), 5)
        wait_for("a larger text", lambda: height() > before)
        larger = height()
        turn_wheel(self.place(program, 0), -8)
        wait_for("a smaller text", lambda: height() < larger)

    def test_text_without_wrapping_is_one_row_a_line(self):
        self.preferences["wrapLines"] = False
        self.write("Lunga.txt", "parola " * 200 + "\nfine")
        program = self.start()
        self.open(program, "Lunga")
        first, second = self.place(program, 0)[1], self.place(program, 1403)[1]
        self.assertLess(second - first, 40)

    def test_what_was_selected_by_keys_stays_on_offer_to_the_middle_button(self):
        self.write("Nota.txt", "uno due")
        program = self.start()
        self.open(program, "Nota")
        program.keys("ctrl+Home", "shift+ctrl+Right", "shift+Right")
        # The selected text ends, and with it what the offer was made of.
        program.keys("BackSpace")
        self.expect_text(program, "ue")
        program.click(*self.place(program, 1), button=2)
        wait_for("the text", lambda: sorted(self.text(program)) == sorted("ueuno d"))
        self.assertIn("uno d", self.text(program))

    def test_selected_text_is_dragged_and_pasted_by_the_middle_button(self):
        self.write("Nota.txt", "uno due tre")
        program = self.start()
        self.open(program, "Nota")
        program.keys("ctrl+Home", "shift+ctrl+Right")
        drag(self.place(program, 1), self.place(program, 8))
        self.expect_text(program, "due uno tre")
        program.keys("ctrl+z")
        self.expect_text(program, "uno due tre")
        program.keys("ctrl+Home", "shift+ctrl+Right", "ctrl+End")
        program.click(*self.place(program, 8), button=2)
        self.expect_text(program, "uno due uno tre")

    def test_text_that_is_let_go_where_it_was_stays(self):
        self.write("Nota.txt", "uno due tre")
        program = self.start()
        self.open(program, "Nota")
        program.keys("ctrl+Home", "shift+ctrl+Right", "shift+ctrl+Right")
        drag(self.place(program, 1), self.place(program, 6))
        # What is typed shows that the drag is over, and that the text is still selected.
        program.type("x")
        self.expect_text(program, "xtre")
        program.keys("ctrl+z")
        self.expect_text(program, "uno due tre")

    def test_text_that_is_dragged_into_a_field_stays_in_the_note(self):
        self.write("Nota.txt", "uno due tre")
        program = self.start()
        self.open(program, "Nota")
        program.keys("ctrl+Home", "shift+ctrl+Right")
        drag(self.place(program, 1), middle(program.find("text", "Cerca")))
        wait_for("the search", lambda: Atspi.Text.get_text(program.find("text", "Cerca"), 0, -1) == "uno ")
        self.expect_text(program, "uno due tre")

    def test_source_text_is_coloured_in_light_and_in_dark_with_the_find_bar_over_it(self):
        self.preferences["sortOrder"] = "title"
        for name, text in SOURCES.items():
            self.write(name, text)
        for appearance in ("light", "dark"):
            self.preferences["appearance"] = appearance
            program = self.start()
            for name, text in SOURCES.items():
                self.open(program, name.split(".")[0])
                self.expect_text(program, text)
                if not program.find("text", "Trova"):
                    self.display.picture(f"editor-{name}-{appearance}")
                    program.keys("ctrl+f")
                    wait_for("the field", lambda: program.find("text", "Trova"))
                    program.type("a")
                # The bar stays open from note to note, and the second match is the one that is stepped to.
                count = text.lower().count("a")
                wait_for("the first match", lambda: program.find("label", f"1 di {count}"))
                program.keys("ctrl+g")
                wait_for("the second match", lambda: program.find("label", f"2 di {count}"))
                self.display.picture(f"editor-{name}-find-{appearance}")
            program.close()


if __name__ == "__main__":
    unittest.main()
