"""Comparing two notes in the running program: how a comparison begins and ends, what a screen reader tells of it, and
what keys and mouse do to it."""

import os
import unittest

from desktop import DesktopTest
from program import EDITOR, children, extents, has_state
from screen import held, wait_for, xdotool


class Comparison(DesktopTest):
    """Two notes of 20 lines: line 2 changed, line 18 taken out and a line put in behind the last one, with a fold of
    the lines that are equal between them."""

    OLD = [f"riga {number}" for number in range(1, 21)]
    NEW = [OLD[0], "riga due"] + OLD[2:17] + OLD[18:] + ["ultima"]
    FOLDED = (["Riga uguale 1: riga 1", "Riga modificata 2: riga 2; ora riga 2: riga due"]
              + [f"Riga uguale {n}: riga {n}" for n in range(3, 6)] + ["9 righe uguali"]
              + [f"Riga uguale {n}: riga {n}" for n in range(15, 18)] + ["Riga rimossa 18: riga 18"]
              + [f"Riga uguale {n}, ora {n - 1}: riga {n}" for n in range(19, 21)] + ["Riga aggiunta 20: ultima"])
    FOLD = FOLDED.index("9 righe uguali")
    EXPANDED = FOLDED[:FOLD] + [f"Riga uguale {n}: riga {n}" for n in range(6, 15)] + FOLDED[FOLD + 1:]

    def begin(self, old=None, new=None):
        """The older note and the newer one, with the first one open; of one age, since files of one moment may be."""
        self.write("Prima.md", "\n".join(old or self.OLD) + "\n")
        self.write("Seconda.md", "\n".join(new or self.NEW) + "\n")
        self.preferences["sortOrder"] = "title"
        program = self.start()
        program.expect_rows(["Prima", "Seconda"])
        program.open_note("Prima")
        with held("ctrl"):
            program.click_row("Seconda")
        wait_for("the panel", lambda: program.find("push button", "Confronta differenze"))
        return program

    def begin_comparison(self, *texts):
        program = self.begin(*texts)
        program.keys("shift+ctrl+d")
        wait_for("the comparison", lambda: program.find("list", "Confronto"))
        return program

    @staticmethod
    def lines(program):
        """The rows of the comparison as a screen reader tells them; none without a comparison."""
        return program.names_in("Confronto")

    def expect_lines(self, program, expected):
        try:
            wait_for("the rows", lambda: self.lines(program) == expected)
        except AssertionError:
            self.assertEqual(expected, self.lines(program))

    @staticmethod
    def line(program, name):
        return program.row(name, "Confronto")

    def await_current(self, program, name):
        wait_for(f"the cursor on {name}", lambda: has_state(program.find_row(name, "Confronto"), "FOCUSED"))

    @staticmethod
    def at_place(program, place):
        row = program.find_list("Confronto").get_child_at_index(place)
        row.clear_cache()
        return row

    @staticmethod
    def current_place(program):
        """The place in the list of the row with the cursor; none without one."""
        return next((place for place, row in enumerate(children(program.find_list("Confronto")))
                     if has_state(row, "FOCUSED")), None)

    def await_current_place(self, program, place):
        wait_for(f"the cursor in row {place}", lambda: has_state(self.at_place(program, place), "FOCUSED"))

    def is_on_show(self, program, place):
        rows = extents(program.find_list("Confronto"))
        row = extents(self.at_place(program, place))
        return rows.y <= row.y and row.y + row.height <= rows.y + rows.height

    def paste_into_new_note(self, program):
        """What the clipboard holds, by way of a note made of it."""
        before = set(os.listdir(self.notes))
        program.keys("shift+ctrl+n")

        def made():
            names = [name for name in os.listdir(self.notes) if name.endswith(".txt") or name.endswith(".md")]
            new = set(names) - before
            return self.read(new.pop()) if new else None
        return wait_for("the note from the clipboard", made)

    def test_tells_each_row_and_opens_folds_by_keys_and_mouse(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        self.display.picture(self.id() + ".folded")
        program.keys("Home", *["Down"] * self.FOLD)
        self.await_current(program, "9 righe uguali")
        program.keys("Return")
        self.expect_lines(program, self.EXPANDED)
        self.display.picture(self.id() + ".expanded")

        # The sides swapped are another comparison of the same notes, with its folds closed.
        program.click_button("Scambia i lati")
        wait_for("the swapped sides", lambda: "Riga modificata 2: riga due; ora riga 2: riga 2" in self.lines(program))
        program.click_row("9 righe uguali", "Confronto")
        wait_for("the open fold", lambda: "9 righe uguali" not in self.lines(program))
        self.assertIn("Riga rimossa 20: ultima", self.lines(program))
        self.assertIn("Riga aggiunta 18: riga 18", self.lines(program))

    def test_shows_all_lines_and_one_column(self):
        program = self.begin_comparison()
        changed = "Riga modificata 2: riga 2; ora riga 2: riga due"
        self.expect_lines(program, self.FOLDED)
        height = extents(self.line(program, changed)).height
        program.click_button("Tutte le righe")
        self.expect_lines(program, self.EXPANDED)
        program.click_button("Unificato")
        wait_for("two lines for a changed row", lambda: extents(self.line(program, changed)).height == 2 * height)
        self.display.picture(self.id() + ".unified")
        program.click_button("Tutte le righe")
        self.expect_lines(program, self.FOLDED)
        program.click_button("Affiancato")
        wait_for("one line for a changed row", lambda: extents(self.line(program, changed)).height == height)

    def test_goes_from_change_to_change(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        changes = [name for name in self.FOLDED if not name.startswith("Riga uguale") and not name.endswith("uguali")]
        for name in changes:
            program.keys("alt+Down")
            self.await_current(program, name)
        program.keys("alt+Down")
        for name in reversed(changes[:-1]):
            program.keys("alt+Up")
            self.await_current(program, name)

    def test_copies_the_selected_lines_of_a_side(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        program.keys("Home", "Right", "shift+Down")
        self.await_current(program, self.FOLDED[1])
        program.keys("ctrl+c")
        self.assertEqual("riga 1\nriga due\n", self.paste_into_new_note(program))

    def test_copies_what_the_mouse_was_dragged_over(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        first = extents(self.line(program, self.FOLDED[self.FOLD - 1]))
        last = extents(self.line(program, self.FOLDED[self.FOLD + 1]))
        x = first.x + first.width // 4
        xdotool("mousemove", x, first.y + first.height // 2, "mousedown", 1,
                "mousemove", x, last.y, "mousemove", x, last.y + last.height // 2)
        self.await_current(program, self.FOLDED[self.FOLD + 1])
        xdotool("mouseup", 1)
        program.keys("ctrl+c")
        self.assertEqual("".join(f"riga {n}\n" for n in range(5, 16)), self.paste_into_new_note(program))

    def test_escape_goes_back_to_the_note_that_was_open(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        program.keys("Escape")
        wait_for("the note", lambda: program.title() == "Prima" and program.find("text", EDITOR))
        program.type("x")
        wait_for("the saved text", lambda: "x" in self.read("Prima.md"))

    def test_says_that_notes_are_identical(self):
        program = self.begin(self.OLD, self.OLD)
        program.keys("shift+ctrl+d")
        wait_for("the state", lambda: program.find("label", "Le due note sono identiche"))
        self.assertIsNone(program.find("list", "Confronto"))
        self.display.picture(self.id() + ".identical")
        program.keys("Escape")
        wait_for("the note", lambda: program.find("text", EDITOR))

    def test_keeps_its_texts_while_a_note_changes_on_disk(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        # The third note shows when the program has read the folder again.
        self.write("Seconda.md", "altro\n")
        self.write("Terza.md", "altro ancora\n")
        program.expect_rows(["Prima", "Seconda", "Terza"])
        self.assertEqual(self.FOLDED, self.lines(program))
        program.keys("Escape")
        wait_for("the note", lambda: program.find("text", EDITOR))
        with held("ctrl"):
            program.click_row("Seconda")
        program.keys("shift+ctrl+d")
        wait_for("the new text", lambda: any("altro" in name for name in self.lines(program)))

    def test_pages_and_ends(self):
        old = [f"riga {number}" for number in range(1, 101)]
        program = self.begin_comparison(old, old[:49] + ["riga cinquanta"] + old[50:])
        program.click_button("Tutte le righe")
        wait_for("all rows", lambda: len(self.lines(program)) == 100)
        program.keys("End")
        self.await_current_place(program, 99)
        self.assertTrue(self.is_on_show(program, 99))
        self.assertFalse(self.is_on_show(program, 0))

        # A page is what the window shows, but for a row or two; it ends at the first row and at the last.
        shown = extents(program.find_list("Confronto")).height // extents(self.at_place(program, 99)).height
        program.keys("Prior")
        wait_for("a page up", lambda: self.current_place(program) not in (None, 99))
        page = 99 - self.current_place(program)
        self.assertTrue(shown - 6 <= page <= shown, f"{page} of {shown} rows")
        self.assertTrue(self.is_on_show(program, 99 - page))
        program.keys("Next")
        self.await_current_place(program, 99)
        program.keys(*["Prior"] * (99 // page + 1))
        self.await_current_place(program, 0)
        program.keys("Next")
        self.await_current_place(program, page)
        program.keys("Home")
        self.await_current_place(program, 0)
        self.assertTrue(self.is_on_show(program, 0))

        # The change is out of sight until it is gone to, and then in the middle.
        self.assertFalse(self.is_on_show(program, 49))
        program.keys("alt+Down")
        self.await_current_place(program, 49)
        rows = extents(program.find_list("Confronto"))
        change = extents(self.at_place(program, 49))
        self.assertLess(abs(change.y + change.height / 2 - rows.y - rows.height / 2), 2 * change.height)

    def test_ends_when_a_note_goes_away(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        os.remove(os.path.join(self.notes, "Seconda.md"))
        program.expect_rows(["Prima"])
        wait_for("the note", lambda: program.find("text", EDITOR))
        self.assertIsNone(program.find("list", "Confronto"))
        self.display.picture(self.id() + ".one")
        # The keys are the editor's again, those too that mean several notes while there are several.
        program.keys("ctrl+Home", "Delete")
        program.type("R")
        wait_for("the saved text", lambda: self.read("Prima.md").startswith("Riga 1\n"))

    def test_ends_when_its_notes_are_trashed(self):
        program = self.begin_comparison()
        self.expect_lines(program, self.FOLDED)
        self.write("Terza.md", "resta\n")
        program.expect_rows(["Prima", "Seconda", "Terza"])
        program.keys("Delete")
        wait_for("the question", lambda: program.find("dialog", "Spostare 2 note nel Cestino?"))
        program.keys("Escape")
        wait_for("the question to go", lambda: not program.find("dialog"))
        self.assertEqual(self.FOLDED, self.lines(program))

        wait_for("the focus", program.is_active)
        program.keys("Delete")
        wait_for("the default answer", lambda: program.has_focus("push button", "Sposta nel Cestino"))
        program.keys("Return")
        program.expect_rows(["Terza"])
        wait_for("the note", lambda: program.title() == "Terza" and program.find("text", EDITOR))
        self.assertIsNone(program.find("list", "Confronto"))


if __name__ == "__main__":
    unittest.main()
