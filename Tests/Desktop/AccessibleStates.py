"""What is seldom on show, as a screen reader and somebody without a mouse find it: empty windows, fields for names, menus,
messages, the settings, and what the text says of itself."""

import itertools
import subprocess
import unittest

from desktop import DesktopTest
from program import EDITOR, Atspi, GLib, children, extents, has_state
from screen import wait_for, xdotool
from walk import walk_windows


def label_of(node):
    """The name of the label that belongs to a node; none if none does. The name of a box of choices is what is chosen."""
    for relation in node.get_relation_set():
        if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
            return relation.get_target(0).get_name()
    return None


class AccessibleStates(DesktopTest):
    def setUp(self):
        super().setUp()
        self.preferences["sortOrder"] = "title"

    def expect_no_faults(self, program):
        walks = walk_windows(program)
        faults = [fault for walk in walks for fault in walk.faults]
        self.assertEqual(faults, [], "\n".join(faults))
        self.assertGreater(sum(walk.seen for walk in walks), 10)

    def start_with_notes(self):
        self.write("alfa.md", "prima riga\nseconda riga\n")
        self.write("Lavoro/beta.txt", "testo")
        program = self.start()
        program.expect_rows(["Lavoro", "beta", "Note", "alfa"])
        program.open_note("alfa")
        return program

    def focus_list(self, program):
        program.keys("ctrl+k")
        wait_for("the search field", lambda: program.has_focus("text", "Cerca"))
        program.keys("Tab", "Tab")

    def await_cursor(self, program, title):
        wait_for("the cursor on " + title, lambda: has_state(program.find_row(title), "FOCUSED"))

    def test_a_window_without_notes_says_so_and_has_all_names(self):
        program = self.start()
        notes = wait_for("the list", lambda: program.find("list", "Note"))
        self.assertEqual(notes.get_child_count(), 0)
        self.assertEqual(notes.get_description(), "Nessuna nota. ⌘N ne crea una nuova.")
        self.assertIsNone(program.find("text", EDITOR))
        self.expect_no_faults(program)

    def test_a_search_that_finds_nothing_says_so_and_can_be_left(self):
        program = self.start_with_notes()
        program.keys("ctrl+k")
        wait_for("the search field", lambda: program.has_focus("text", "Cerca"))
        program.type("introvabile")
        wait_for("the answer", lambda: program.find_list("Note").get_description() ==
                 "Nessun risultato. ↩ crea la nota «introvabile».")
        self.expect_no_faults(program)
        program.keys("Escape")
        program.expect_rows(["Lavoro", "beta", "Note", "alfa"])

    def test_fields_for_names_have_the_keyboard_and_give_it_back(self):
        program = self.start_with_notes()
        program.keys("ctrl+r")
        wait_for("the field of the title", lambda: program.has_focus("text", "Titolo della nota"))
        self.expect_no_faults(program)
        program.keys("Escape")
        wait_for("its end", lambda: not program.find("text", "Titolo della nota"))
        program.keys("ctrl+alt+n")
        name = wait_for("the field of the folder", lambda: program.find_where(
            lambda node: node.get_role_name() == "text" and node.get_name() == "Nome della cartella", passed_over=()))
        wait_for("the keyboard in it", lambda: has_state(name, "FOCUSED"))
        self.expect_no_faults(program)
        program.type("Casa")
        program.keys("Return")
        wait_for("the folder", lambda: "Casa" in program.rows())

    def expect_menu(self, program, open_it, *names):
        """Opens a menu and goes through it from its first item to its last, as somebody hears it. Menus that belong to no
        menu bar are no one's children in the tree: a screen reader knows them from what they announce."""
        heard = []

        def hear(event):
            if event.detail1 and "menu item" in event.source.get_role_name():
                heard.append(event.source.get_name())

        def has_heard(count):
            while GLib.MainContext.default().iteration(False):
                pass
            return len(heard) > count

        listener = Atspi.EventListener.new(hear)
        listener.register("object:state-changed:focused")
        before = len(program.windows())
        open_it()
        wait_for("the menu", lambda: len(program.windows()) > before)
        while len(heard) < 30 and heard.count(heard[0] if heard else "") < 2:
            count = len(heard)
            program.keys("Down")
            wait_for(f"the item after {heard}", lambda: has_heard(count))
        listener.deregister("object:state-changed:focused")
        self.assertEqual([name for name in heard if not name.strip() or "&" in name], [])
        self.assertLessEqual(set(names), set(heard))
        program.keys("Escape")
        wait_for("its end", lambda: len(program.windows()) == before)

    def test_menus_of_rows_and_of_the_format_are_reached_by_keys_alone(self):
        program = self.start_with_notes()
        self.focus_list(program)
        self.await_cursor(program, "alfa")
        self.expect_menu(program, lambda: program.keys("Menu"), "Sposta nel Cestino…")
        self.await_cursor(program, "alfa")
        program.keys("Up", "Up")
        self.await_cursor(program, "Lavoro")
        self.expect_menu(program, lambda: program.keys("shift+F10"), "Elimina cartella…")
        self.await_cursor(program, "Lavoro")
        program.keys("Down", "Down")
        self.await_cursor(program, "alfa")
        button = program.find_named("Formato della nota")
        for _ in range(6):
            if has_state(button, "FOCUSED"):
                break
            before = program.find_focused()
            program.keys("Tab")
            wait_for("the next control", lambda: program.find_focused() != before)
        self.assertTrue(has_state(button, "FOCUSED"))
        self.assertEqual(button.get_description(), "Markdown")
        self.expect_menu(program, lambda: program.keys("space"), "Markdown", "JSON")

    def test_a_message_is_read_and_answered_by_keyboard(self):
        program = self.start_with_notes()

        def limit(size):
            subprocess.run(["prlimit", "--pid", str(program.process.pid), "--fsize=" + size], check=True)

        # No file may grow: saving fails.
        limit("0:unlimited")
        wait_for("the text", lambda: program.has_focus("text", EDITOR))
        program.type("x")
        program.keys("ctrl+s")
        button = wait_for("the message", lambda: program.find("push button", "OK"))
        wait_for("the keyboard on it", lambda: has_state(button, "FOCUSED"))
        self.assertTrue(program.find("label", "Si è verificato un problema"))
        self.expect_no_faults(program)
        limit("unlimited:unlimited")
        program.keys("Return")
        wait_for("its end", lambda: not program.find("push button", "OK"))
        wait_for("the keyboard in the text", lambda: program.has_focus("text", EDITOR))

    def test_each_page_of_the_settings_is_gone_through_by_the_keyboard(self):
        program = self.start_with_notes()
        program.keys("ctrl+comma")
        wait_for("the settings", lambda: program.find("page tab", "Generale"))
        pages = (
            ("Generale", ["Cartella", "Scegli la cartella delle note", "Apri nel Finder", "Tema",
                          "Mostra Quillary nella barra dei menu", "Formato delle nuove note", "Ordina per",
                          "Riconosci JSON e CSV incollati in una nota vuota"]),
            ("Editor", ["Carattere", "Dimensione", "A capo automatico"]),
        )
        for page, controls in pages:
            program.click_button(page, "page tab")
            wait_for("the page " + page, lambda: program.find_named(controls[0]))
            self.assertEqual(self.go_round(program), controls)
            self.expect_no_faults(program)
        program.keys("Escape")
        wait_for("the end of the settings", lambda: not program.find("page tab", "Generale"))

    def go_round(self, program):
        """The names of what gets the keyboard from the tabs through all of the page and back to them."""
        def focused():
            # Qt says of the tab of the page on show that it has the keyboard, wherever that is.
            node = program.find_where(lambda node: node.get_state_set().contains(Atspi.StateType.FOCUSED) and
                                      node.get_role_name() not in ("frame", "dialog", "filler", "page tab"))
            return label_of(node) or node.get_name() if node else None
        tabs = wait_for("the tabs", lambda: program.find("page tab list")).get_name()
        visited = []
        while len(visited) < 30:
            now = wait_for("something that has the keyboard", focused)
            if now == tabs and visited:
                break
            if now == tabs or visited:
                visited.append(now)
            program.keys("Tab")
            wait_for("the next one after " + now, lambda: focused() not in (None, now))
        return visited[1:]

    def test_texts_of_double_size_neither_meet_nor_are_cut(self):
        self.set_environment("QT_FONT_DPI", "192")
        self.write("alfa.md", "testo")
        program = self.start()
        wait_for("the text", lambda: program.has_focus("text", EDITOR))
        # Narrower than it may be.
        xdotool("windowsize", "--sync", program.window, 700, 500)
        program.keys("ctrl+alt+f")
        wait_for("the find bar", lambda: program.find("text", "Sostituisci con"))
        self.expect_no_overlaps(program)
        program.keys("ctrl+comma")
        for control in ("Apri nel Finder", "A capo automatico", "Vai alla nota 1–9"):
            wait_for("the page with " + control, lambda: program.find_named(control))
            self.expect_no_overlaps(program)
            program.keys("ctrl+Tab")
        program.keys("Escape")
        wait_for("the end of the settings", lambda: not program.find("page tab", "Generale"))
        program.keys("Escape", "ctrl+shift+BackSpace")
        wait_for("the question", lambda: program.find("push button", "Annulla"))
        self.expect_no_overlaps(program)

    def expect_no_overlaps(self, program):
        """No control on show lies over another of its window, and each is within its window. The settings scroll."""
        for window in children(program.application()):
            if not has_state(window, "SHOWING"):
                continue
            controls, nodes = [], list(children(window))
            while nodes:
                node = nodes.pop()
                if not has_state(node, "SHOWING") or node.get_role_name() in ("menu bar", "list", "scroll pane"):
                    continue
                parts = list(children(node))
                nodes += parts
                if node.get_role_name() in ("push button", "toggle button", "check box", "label", "text", "combo box",
                                            "spin button") and not any(has_state(part, "SHOWING") for part in parts):
                    controls.append((node.get_name(), extents(node)))
            self.assertGreater(len(controls), 1)
            room = extents(window)
            for name, place in controls:
                self.assertGreaterEqual((place.x, place.y), (room.x, room.y), name)
                self.assertLessEqual(place.x + place.width, room.x + room.width, name)
                self.assertTrue(place.y + place.height <= room.y + room.height or "Impostazioni" in window.get_name(), name)
            for (one, a), (other, b) in itertools.combinations(controls, 2):
                apart = a.x + a.width <= b.x or b.x + b.width <= a.x or a.y + a.height <= b.y or b.y + b.height <= a.y
                self.assertTrue(apart or not a.width or not b.width, f"{one} and {other} meet in {window.get_name()}")

    def test_the_text_tells_where_the_caret_is_and_what_is_selected(self):
        program = self.start_with_notes()
        view = wait_for("the text", lambda: program.find("text", EDITOR))
        wait_for("the keyboard", lambda: program.has_focus("text", EDITOR))
        for state in ("EDITABLE", "MULTI_LINE", "FOCUSABLE", "SHOWING"):
            self.assertTrue(has_state(view, state), state)
        self.assertEqual(Atspi.Text.get_text(view, 0, -1), "prima riga\nseconda riga\n")
        program.keys("ctrl+Home")
        wait_for("the caret at the start", lambda: Atspi.Text.get_caret_offset(view) == 0)
        program.keys("Down", "Right")
        wait_for("the caret in the second line", lambda: Atspi.Text.get_caret_offset(view) == 12)
        program.keys("ctrl+shift+Right")
        wait_for("the selection", lambda: Atspi.Text.get_n_selections(view) == 1)
        selected = Atspi.Text.get_selection(view, 0)
        self.assertEqual(Atspi.Text.get_text(view, selected.start_offset, selected.end_offset).strip(), "econda")
        line = Atspi.Text.get_text_at_offset(view, 12, Atspi.TextBoundaryType.LINE_START)
        self.assertEqual(line.content.strip(), "seconda riga")
        program.keys("Delete")
        wait_for("the change", lambda: "econda" not in Atspi.Text.get_text(view, 0, -1))


if __name__ == "__main__":
    unittest.main()
