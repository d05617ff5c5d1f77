"""Everything that the program shows, as a screen reader sees it: each node of the accessibility tree has a role and states,
each control a name, and what takes the keyboard can be reached."""

import subprocess
import unittest

from desktop import DesktopTest, wait_for

# What a person does something with, or reads on its own: without a name a screen reader would say "button".
NAMED_ROLES = {
    "push button", "toggle button", "check box", "radio button", "combo box", "spin button", "slider", "text", "entry",
    "list", "list item", "table", "table cell", "tree", "tree item", "tree table", "page tab", "menu", "menu item",
    "check menu item", "radio menu item", "frame", "dialog", "alert", "link", "tool bar", "document text",
    "column header", "row header", "heading", "icon", "image", "progress bar", "menu bar item",
}
FOCUSABLE_ROLES = {"text", "entry", "list", "table", "tree", "tree table", "combo box", "spin button", "check box"}
# Rows of lists that are longer than this are alike: the first ones stand for all.
MOST_CHILDREN = 40


class Walk:
    """One walk over the tree of a window, with what is wrong in it."""

    def __init__(self, start, passed_over=()):
        from gi.repository import Atspi
        self.states = Atspi.StateType
        self.seen = 0
        self.roles = set()
        self.faults = []
        nodes = [(start, "")]
        while nodes:
            node, path = nodes.pop()
            path = f"{path}/{node.get_role_name()}«{node.get_name()}»"
            self.look_at(node, path)
            count = 0 if node.get_role_name() in passed_over else node.get_child_count()
            for index in range(min(count, MOST_CHILDREN)):
                child = node.get_child_at_index(index)
                if child is None:
                    self.faults.append(f"child {index} of {count} is missing: {path}")
                else:
                    nodes.append((child, path))

    def look_at(self, node, path):
        from gi.repository import Atspi
        states = node.get_state_set()
        role = node.get_role_name()
        # What is not on show is made when it is wanted.
        if not states.contains(self.states.SHOWING) and role not in ("menu", "menu item", "check menu item"):
            return
        self.seen += 1
        self.roles.add(role)
        if role in ("", "unknown", "invalid") or node.get_role() == Atspi.Role.INVALID:
            self.faults.append("no role: " + path)
        if not states.contains(self.states.VISIBLE) and states.contains(self.states.SHOWING):
            self.faults.append("on show and not visible: " + path)
        if role in FOCUSABLE_ROLES and states.contains(self.states.SENSITIVE) and \
                not states.contains(self.states.FOCUSABLE):
            self.faults.append("out of reach of the keyboard: " + path)
        if role in NAMED_ROLES and not (node.get_name() or "").strip():
            self.faults.append("no name: " + path)
        if "&" in (node.get_name() or ""):
            self.faults.append("a mark of the menus in the name: " + path)


class Accessibility(DesktopTest):
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
        self.program = self.start()
        wait_for("the list", lambda: "prova" in self.program.rows())

    def windows(self):
        application = self.program.application()
        return [application.get_child_at_index(index) for index in range(application.get_child_count())]

    def expect_all_named(self, what, *roles):
        """Walks over every window, without its menus; the roles are some that must be among what is on show."""
        windows = [window for window in self.windows() if window is not None]
        walks = [Walk(window, passed_over=("menu bar",)) for window in windows]
        faults = [fault for walk in walks for fault in walk.faults]
        faults += [f"a window is a {window.get_role_name()}: {window.get_name()}" for window in windows
                   if window.get_role_name() not in ("frame", "window", "dialog", "alert", "popup menu", "tool tip")]
        self.assertEqual(faults, [], what + ":\n" + "\n".join(faults))
        shown = set().union(*(walk.roles for walk in walks))
        self.assertLessEqual(set(roles), shown, what)
        self.assertGreater(sum(walk.seen for walk in walks), 20, what)

    def select(self, title):
        self.program.click_row(title)
        wait_for("the title " + title, lambda: self.program.title() == title)
        wait_for("the focus", self.program.is_active)

    @staticmethod
    def middle(node):
        from gi.repository import Atspi
        place = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
        return place.x + place.width // 2, place.y + place.height // 2

    def node(self, is_wanted):
        """The first node on show that is wanted; none if there is none."""
        from gi.repository import Atspi
        nodes = [window for window in self.windows() if window is not None]
        while nodes:
            node = nodes.pop()
            if node.get_state_set().contains(Atspi.StateType.SHOWING) and is_wanted(node):
                return node
            if node.get_role_name() not in ("menu bar", "table"):
                children = range(min(node.get_child_count(), MOST_CHILDREN))
                nodes.extend(child for child in map(node.get_child_at_index, children) if child is not None)
        return None

    def focused(self):
        """The node that has the keyboard; none if nobody says so."""
        from gi.repository import Atspi
        return self.node(lambda node: node.get_state_set().contains(Atspi.StateType.FOCUSED) and
                         node.get_role_name() not in ("frame", "dialog"))

    def the_main_window_with_a_note_its_find_bar_and_its_previews(self):
        program = self.program
        self.select("prova")
        self.expect_all_named("the note", "frame", "menu bar", "list", "list item", "text", "push button")
        program.keys("ctrl+alt+f")
        wait_for("the find bar", lambda: program.find("text", "Sostituisci con"))
        program.keys("e")
        self.expect_all_named("the find bar", "text")
        program.keys("Escape")
        wait_for("the end of the find bar", lambda: not program.find("text", "Sostituisci con"))
        for title, name in (("prova", "Anteprima Markdown"), ("dati", "Albero JSON"), ("tabella", "Tabella"),
                            ("guasto", "Righe intorno all’errore")):
            self.select(title)
            program.keys("ctrl+shift+p")
            wait_for("the preview of " + title, lambda: self.node(lambda node: node.get_name() == name))
            self.expect_all_named("the preview of " + title)

    def several_notes_and_their_comparison(self):
        program = self.program
        self.select("altra")
        rows = program.find("list", "Note")
        row = next(row for row in map(rows.get_child_at_index, range(rows.get_child_count()))
                   if row.get_name().startswith("riunione"))
        x, y = self.middle(row)
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "keydown", "ctrl", "click", "1", "keyup", "ctrl"],
                       check=True)
        wait_for("the panel", lambda: program.find("push button", "Confronta differenze"))
        self.expect_all_named("the panel of several notes", "push button")
        program.keys("ctrl+shift+d")
        wait_for("the comparison", lambda: program.find("check box", "Tutte le righe"))
        self.expect_all_named("the comparison", "check box")
        program.keys("Escape")
        wait_for("the end of the comparison", lambda: not program.find("check box", "Tutte le righe"))

    def the_settings(self):
        program = self.program
        self.select("prova")
        program.keys("ctrl+comma")
        for tab, control in (("Generale", "Scegli la cartella delle note"), ("Editor", "A capo automatico"),
                             ("Scorciatoie", "Nota successiva")):
            node = wait_for("the tab " + tab, lambda: program.find("page tab", tab))
            program.click(*self.middle(node))
            wait_for("the page " + tab, lambda: self.node(lambda node: control in (node.get_name() or "")))
            self.expect_all_named("the settings, " + tab, "page tab")

    def the_questions_before_something_goes(self):
        program = self.program
        self.select("prova")
        program.keys("ctrl+shift+BackSpace")
        wait_for("the question", lambda: program.find("push button", "Sposta nel Cestino"))
        self.expect_all_named("the question about a note", "push button")
        program.keys("Escape")
        wait_for("its end", lambda: not program.find("push button", "Sposta nel Cestino"))

    def the_menus_hold_no_item_without_a_name(self):
        program = self.program
        self.select("prova")
        for name in ("File", "Modifica", "Vista", "Nota", "Finestra"):
            item = wait_for("the menu " + name, lambda: program.find("menu item", name))
            program.click(*self.middle(item))
            wait_for("the open menu " + name, lambda: program.find("popup menu"))
            walk = Walk(program.find("menu bar"))
            self.assertEqual(walk.faults, [], "the menu " + name)
            self.assertGreater(walk.seen, 7)
            program.keys("Escape")
            wait_for("the end of the menu " + name, lambda: not program.find("popup menu"))

    def the_keyboard_reaches_named_controls_from_the_find_bar_to_the_text(self):
        program = self.program
        self.select("prova")
        program.keys("ctrl+f")
        wait_for("the field", lambda: self.focused() is not None and self.focused().get_name() == "Trova")
        visited = []
        for _ in range(12):
            node = wait_for("something that has the keyboard", self.focused)
            name = node.get_name()
            self.assertTrue(name.strip(), f"no name: {node.get_role_name()} after {visited}")
            visited.append(name)
            if name == "Testo della nota":  # takes tabs for itself
                break
            program.keys("Tab")
            wait_for("the next one after " + name, lambda: (self.focused() or node).get_name() != name)
        self.assertEqual(visited[0], "Trova")
        self.assertEqual(visited[-1], "Testo della nota")
        self.assertGreater(len(visited), 3, visited)
        program.keys("ctrl+f", "Escape")
        wait_for("the end of the find bar", lambda: not program.find("text", "Trova"))

    def test_everything_on_show_has_its_role_its_states_and_its_name(self):
        for part in (self.the_keyboard_reaches_named_controls_from_the_find_bar_to_the_text,
                     self.the_main_window_with_a_note_its_find_bar_and_its_previews,
                     self.several_notes_and_their_comparison,
                     self.the_questions_before_something_goes,
                     self.the_menus_hold_no_item_without_a_name,
                     self.the_settings):
            with self.subTest(part.__name__):
                part()


if __name__ == "__main__":
    unittest.main()
