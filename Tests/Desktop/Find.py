"""Finding and replacing in the running program: keys, focus, the status line, and what is on disk in the end."""

import unittest

from desktop import DesktopTest
from screen import wait_for


class Find(DesktopTest):
    TEXT = "uno due uno\ntre UNO, unove\n"

    def open_note(self, appearance="light"):
        self.write("Nota.txt", self.TEXT)
        self.preferences["appearance"] = appearance
        return self.start_with_one_note("Nota")

    @staticmethod
    def expect_status(program, text):
        wait_for(f"the status {text}", lambda: program.find("label", text))

    def expect_file(self, text):
        wait_for("the saved text", lambda: self.read("Nota.txt") == text)

    def test_finds_steps_replaces_and_undoes(self):
        program = self.open_note()
        program.keys("ctrl+f")
        program.type("uno")
        self.expect_status(program, "1 di 4")
        program.keys("Return", "Return")
        self.expect_status(program, "3 di 4")
        program.keys("shift+Return")
        self.expect_status(program, "2 di 4")
        program.click_button("Parola intera")
        self.expect_status(program, "1 di 3")
        program.click_button("Maiuscole/minuscole")
        self.expect_status(program, "1 di 2")
        self.display.picture(self.id() + ".bar")

        program.keys("ctrl+alt+f")
        wait_for("the field", lambda: program.find("text", "Sostituisci con"))
        program.type("quattro")
        program.keys("Return")
        self.expect_file(self.TEXT.replace("uno", "quattro", 1))
        self.expect_status(program, "1 di 1")
        program.click_button("Maiuscole/minuscole")
        program.click_button("Parola intera")
        self.expect_status(program, "1 di 3")
        program.click_button("Tutte")
        self.expect_status(program, "Nessun risultato")
        self.expect_file("quattro due quattro\ntre quattro, quattrove\n")

        # Escape gives the focus back to the text; one step takes back all replacements, another the first one.
        program.keys("Escape")
        wait_for("the bar to close", lambda: program.find("text", "Trova") is None)
        program.keys("ctrl+z")
        self.expect_file(self.TEXT.replace("uno", "quattro", 1))
        program.keys("ctrl+z")
        self.expect_file(self.TEXT)

    def test_replaces_by_the_template_of_a_pattern_in_the_dark(self):
        program = self.open_note("dark")
        program.keys("ctrl+f")
        program.click_button("Espressione regolare")
        program.type("(\\w+")
        self.expect_status(program, "Espressione regolare non valida")
        program.type(") (\\w+)")
        self.expect_status(program, "1 di 2")
        program.click_button("Sostituisci (⌥⌘F)")
        wait_for("the field", lambda: program.find("text", "Sostituisci con"))
        program.type("$2 $1")
        self.display.picture(self.id() + ".bar")
        program.click_button("Tutte")
        self.expect_file("due uno uno\nUNO tre, unove\n")

    def test_takes_what_is_selected_for_the_query(self):
        program = self.open_note()
        program.keys("ctrl+Home", "ctrl+Right", "ctrl+shift+Right")
        program.keys("ctrl+e")
        wait_for("the field", lambda: program.find("text", "Trova"))
        program.keys("Escape")
        wait_for("the bar to close", lambda: program.find("text", "Trova") is None)
        program.keys("shift+Left", "ctrl+f")
        self.expect_status(program, "1 di 1")


if __name__ == "__main__":
    unittest.main()
