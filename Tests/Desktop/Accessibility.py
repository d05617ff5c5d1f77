"""Everything that the program shows, as a screen reader sees it: each node of the accessibility tree has a role and states,
each control a name, and what takes the keyboard can be reached."""

import os
import unittest

from program import EDITOR, children, has_state
from screen import held, wait_for
from stage import PANEL, SoloTest
from walk import Walk, walk_windows

class Accessibility(SoloTest):
    MARKDOWN = ("# Titolo\n\nTesto con un [collegamento](altra.md) e `codice`.\n\n- [ ] da fare\n- [x] fatto\n\n> Citazione\n\n"
                "| a | b |\n|---|---|\n| 1 | 2 |\n\n```js\nlet a = 1;\n```\n")

    def setUp(self):
        super().setUp()
        self.preferences["sortOrder"] = "title"
        self.write("altra.md", "una riga\nuguale\nvecchia\n")
        self.write("dati.json", '{"nome": "Quillary", "numeri": [1, 2, {"a": null}], "vuoto": {}}')
        self.write("guasto.json", '{"nome": }')
        self.write("prova.md", self.MARKDOWN)
        self.write("tabella.csv", "nome,anni\nAda,36\nAlan,41\n")
        self.write("Lavoro/riunione.txt", "una riga\nuguale\nnuova\n")
        self.install_all()
        self.program = self.start()
        wait_for("the list", lambda: "prova" in self.program.rows())

    def windows(self):
        return list(children(self.program.application()))

    def expect_all_named(self, what, *roles):
        """Walks over every window, without its menus; the roles are some that must be among what is on show."""
        windows = self.windows()
        walks = walk_windows(self.program)
        faults = [fault for walk in walks for fault in walk.faults]
        faults += [f"a window is a {window.get_role_name()}: {window.get_name()}" for window in windows
                   if window.get_role_name() not in ("frame", "window", "dialog", "alert", "popup menu", "tool tip")]
        self.assertEqual(faults, [], what + ":\n" + "\n".join(faults))
        shown = set().union(*(walk.roles for walk in walks))
        self.assertLessEqual(set(roles), shown, what)
        self.assertGreater(sum(walk.seen for walk in walks), 20, what)

    def the_main_window_with_a_note_its_find_bar_and_its_previews(self):
        program = self.program
        self.program.open_note("prova")
        self.expect_all_named("the note", "frame", "menu bar", "list", "list item", "text", "push button")
        program.keys("ctrl+alt+f")
        wait_for("the find bar", lambda: program.find("text", "Sostituisci con"))
        program.keys("e")
        self.expect_all_named("the find bar", "text")
        program.keys("Escape")
        wait_for("the end of the find bar", lambda: not program.find("text", "Sostituisci con"))
        for title, name in (("prova", "Anteprima Markdown"), ("dati", "Albero JSON"), ("tabella", "Tabella"),
                            ("guasto", "Righe intorno all'errore")):
            self.program.open_note(title)
            program.keys("ctrl+shift+p")
            wait_for("the preview of " + title, lambda: program.find_named(name))
            self.expect_all_named("the preview of " + title)

    def several_notes_and_their_comparison(self):
        program = self.program
        self.program.open_note("altra")
        with held("ctrl"):
            program.click_row("riunione")
        wait_for("the panel", lambda: program.find("push button", "Confronta differenze"))
        self.expect_all_named("the panel of several notes", "push button")
        program.keys("ctrl+shift+d")
        wait_for("the comparison", lambda: program.find("check box", "Tutte le righe"))
        self.expect_all_named("the comparison", "check box")
        program.keys("Escape")
        wait_for("the end of the comparison", lambda: not program.find("check box", "Tutte le righe"))

    def the_settings(self):
        program = self.program
        self.program.open_note("prova")
        program.keys("ctrl+comma")
        for tab, control in (("Generale", "Scegli la cartella delle note"), ("Editor", "A capo automatico"),
                             ("Scorciatoie", "Nota successiva")):
            program.click_button(tab, "page tab")
            wait_for("the page " + tab, lambda: program.find_where(lambda node: control in (node.get_name() or "")))
            self.expect_all_named("the settings, " + tab, "page tab")

    def the_keyboard_goes_round(self, what, names):
        """From the control that has the keyboard through all others and back to it."""
        program = self.program
        visited = [wait_for("something that has the keyboard", program.find_focused).get_name()]
        while len(visited) < 12 and (len(visited) == 1 or visited[-1] != visited[0]):
            program.keys("Tab")
            wait_for("the next one after " + visited[-1],
                     lambda: program.find_focused() and program.find_focused().get_name() != visited[-1])
            visited.append(program.find_focused().get_name())
        self.assertEqual(visited, names + names[:1], what)

    def the_panel_that_sends_to_solo(self):
        program = self.program
        program.open_note("prova")
        program.keys("ctrl+shift+Return")
        wait_for("the panel", lambda: program.find("dialog", PANEL))
        wait_for("what Solo offers", lambda: has_state(program.find("radio button", "Claude"), "CHECKED"))
        wait_for("the projects", lambda: has_state(program.find("push button", "Avvia sessione"), "ENABLED"))
        self.expect_all_named("the panel of a new session", "dialog", "radio button", "check box", "list", "list item",
                              "text", "push button", "label")
        self.assertTrue(has_state(program.find("radio button", "Nuova sessione"), "CHECKED"))
        self.assertFalse(has_state(program.find("radio button", "Sessione aperta"), "CHECKED"))
        self.assertFalse(has_state(program.find("radio button", "Codex"), "CHECKED"))
        both = ["Porta Solo in primo piano dopo l'invio", "Aggiorna"]
        self.the_keyboard_goes_round("a new session", [
            "Cerca progetto (scelto: Alfa)", "Progetto", "Avvia sessione", *both, "Nuova sessione", "Claude"])

        # Among choices the arrows go, and choose.
        program.keys("shift+Tab")
        wait_for("the tools", lambda: program.has_focus("radio button", "Claude"))
        program.keys("Left")
        wait_for("another tool", lambda: has_state(program.find("radio button", "Codex"), "CHECKED"))
        program.keys("shift+Tab")
        wait_for("the modes", lambda: program.has_focus("radio button", "Nuova sessione"))
        program.keys("Right")
        wait_for("the other mode", lambda: has_state(program.find("radio button", "Sessione aperta"), "CHECKED"))
        wait_for("the sessions", lambda: "Libera" in program.names_in("Sessioni"))
        self.expect_all_named("the panel of open sessions", "dialog", "radio button", "check box", "list", "list item",
                              "text", "push button")
        self.the_keyboard_goes_round("an open session", [
            "Sessione aperta", "Cerca sessione o progetto", "Sessioni", "Premi Invio dopo l'incolla", *both])
        box = "Premi Invio dopo l'incolla"
        self.assertTrue(has_state(program.find("check box", box), "CHECKED"))
        program.keys("Tab", "Tab", "Tab")
        wait_for("the box", lambda: program.has_focus("check box", box))
        program.keys("space")
        wait_for("the other state", lambda: not has_state(program.find("check box", box), "CHECKED"))
        program.keys("Escape")
        wait_for("the end of the panel", lambda: not program.find("dialog", PANEL))

    def the_questions_before_something_goes(self):
        program = self.program
        self.program.open_note("prova")
        program.keys("ctrl+shift+BackSpace")
        wait_for("the question", lambda: program.find("push button", "Sposta nel Cestino"))
        self.expect_all_named("the question about a note", "push button")
        program.keys("Escape")
        wait_for("its end", lambda: not program.find("push button", "Sposta nel Cestino"))

    def await_row(self, title):
        wait_for("the cursor on " + title, lambda: has_state(self.program.find_row(title), "FOCUSED"))

    def the_question_about_a_folder_is_answered_by_keyboard(self):
        program = self.program
        keep, trash = "Elimina la cartella, tieni le note", "Sposta tutto nel Cestino"

        def await_button(name):
            wait_for("the keyboard on " + name, lambda: program.has_focus("push button", name))

        def ask():
            program.keys("Delete")
            await_button("Annulla")

        program.open_note("altra")
        program.keys("ctrl+k", "Tab", "Tab")
        self.await_row("altra")
        program.keys("Up", "Up")
        self.await_row("Lavoro")
        ask()
        dialog = program.find("dialog", "Eliminare la cartella «Lavoro»?")
        self.assertEqual(dialog.get_description(), "Contiene 1 nota. Puoi tenerla spostandola fuori dalla cartella.")
        self.expect_all_named("the question about a folder", "dialog", "push button")
        # What has the keyboard first does no harm, and what destroys is reached last. Return presses what has it.
        for name in ("Annulla", keep, trash, "Annulla"):
            await_button(name)
            self.assertTrue(has_state(program.find("push button", name), "IS_DEFAULT"), name)
            program.keys("Tab")
        await_button(keep)
        program.keys("Escape")
        self.await_row("Lavoro")
        ask()
        program.keys("Return")
        self.await_row("Lavoro")
        self.assertTrue(os.path.exists(self.notes + "/Lavoro/riunione.txt"))
        ask()
        program.keys("Tab")
        await_button(keep)
        program.keys("Return")
        wait_for("the note outside", lambda: os.path.exists(self.notes + "/riunione.txt"))
        wait_for("the end of the folder", lambda: not os.path.exists(self.notes + "/Lavoro"))
        wait_for("the rows", lambda: "Lavoro" not in program.rows() and "riunione" in program.rows())

    def the_menus_hold_no_item_without_a_name(self):
        program = self.program
        self.program.open_note("prova")
        for name in ("File", "Modifica", "Vista", "Nota", "Finestra"):
            program.click_button(name, "menu item")
            wait_for("the open menu " + name, lambda: program.find("popup menu"))
            walk = Walk(program.find("menu bar"))
            self.assertEqual(walk.faults, [], "the menu " + name)
            self.assertGreater(walk.seen, 7)
            program.keys("Escape")
            wait_for("the end of the menu " + name, lambda: not program.find("popup menu"))

    def the_keyboard_reaches_named_controls_from_the_find_bar_to_the_text(self):
        program = self.program
        self.program.open_note("prova")
        program.keys("ctrl+f")
        wait_for("the field", lambda: program.find_focused() is not None and program.find_focused().get_name() == "Trova")
        visited = []
        for _ in range(12):
            node = wait_for("something that has the keyboard", program.find_focused)
            name = node.get_name()
            self.assertTrue(name.strip(), f"no name: {node.get_role_name()} after {visited}")
            visited.append(name)
            if name == EDITOR:  # takes tabs for itself
                break
            program.keys("Tab")
            wait_for("the next one after " + name, lambda: (program.find_focused() or node).get_name() != name)
        self.assertEqual(visited[0], "Trova")
        self.assertEqual(visited[-1], EDITOR)
        self.assertGreater(len(visited), 3, visited)
        program.keys("ctrl+f", "Escape")
        wait_for("the end of the find bar", lambda: not program.find("text", "Trova"))

    def test_everything_on_show_has_its_role_its_states_and_its_name(self):
        for part in (self.the_keyboard_reaches_named_controls_from_the_find_bar_to_the_text,
                     self.the_main_window_with_a_note_its_find_bar_and_its_previews,
                     self.several_notes_and_their_comparison,
                     self.the_questions_before_something_goes,
                     self.the_panel_that_sends_to_solo,
                     self.the_question_about_a_folder_is_answered_by_keyboard,
                     self.the_menus_hold_no_item_without_a_name,
                     self.the_settings):
            with self.subTest(part.__name__):
                part()


if __name__ == "__main__":
    unittest.main()
