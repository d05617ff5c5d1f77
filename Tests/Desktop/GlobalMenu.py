"""The menus in the desktop's own bar instead of the window's: what a desktop reads of them, and that keys work as ever."""

import os
import unittest

from desktop import DesktopTest
from screen import wait_for
from services import Menu, Service


class Registrar(Service):
    """Shows the menus of windows, as desktops with a bar for all windows do."""

    name = "com.canonical.AppMenu.Registrar"
    path = "/com/canonical/AppMenu/Registrar"
    interface = """
      <interface name="com.canonical.AppMenu.Registrar">
        <method name="RegisterWindow"><arg type="u" direction="in"/><arg type="o" direction="in"/></method>
        <method name="UnregisterWindow"><arg type="u" direction="in"/></method>
      </interface>"""

    def __init__(self):
        self.menus = {}
        super().__init__()

    def called(self, sender, method, arguments):
        if method == "RegisterWindow":
            self.menus[arguments[0]] = Menu(self, sender, arguments[1])
        else:
            self.menus.pop(arguments[0], None)


class GlobalMenu(DesktopTest):
    def setUp(self):
        super().setUp()
        # Qt leaves the menus to the desktop where it knows the desktop for one that shows them.
        self.set_environment("XDG_CURRENT_DESKTOP", "KDE")
        self.preferences["sortOrder"] = "title"
        for name in ("a.json", "b.md", "Lavoro/c.md"):
            self.write(name, f"testo di {name}\n")
        self.registrar = Registrar()
        self.addCleanup(self.registrar.close)
        self.program = self.start()
        self.menu = wait_for("the menus", lambda: self.registrar.menus.get(int(self.program.window)))
        self.program.open_note("b")

    def test_the_desktop_reads_all_menus_and_chooses_in_them(self):
        program, menu = self.program, self.menu
        self.assertEqual(list(menu.open()), ["_File", "_Modifica", "_Vista", "_Nota", "Finest_ra"])
        self.assertIsNone(program.find("menu bar"))
        for path in (("_File",), ("_Modifica", "Trova"), ("_Vista", "Aspetto"), ("_Nota", "Formato"), ("Finest_ra",)):
            self.assertGreaterEqual(len(menu.open(*path)), 3, path)
        note = menu.open("_Nota")
        self.assertEqual(note["Nota successiva"]["shortcut"], [["Control", "Down"]])
        self.assertFalse(note["Invia a Solo…"]["enabled"])
        self.assertFalse(note["Cartella"]["enabled"])
        self.assertTrue(note["Formatta JSON"].get("enabled", True))
        self.assertEqual([name for name, entry in menu.open("_Vista", "Aspetto").items() if entry.get("toggle-state") == 1],
                         ["Sistema"])

        menu.choose("_Nota", "Nota precedente")
        wait_for("the note before", lambda: program.title() == "a")
        menu.choose("_Vista", "Ingrandisci testo")
        wait_for("the larger text", lambda: self.preference("fontSize") == 14)
        menu.choose("_Nota", "Sposta in", "Lavoro")
        wait_for("the file", lambda: os.path.exists(self.notes + "/Lavoro/a.json"))
        program.click_row("Lavoro")
        wait_for("the menu of the folder", lambda: menu.open("_Nota")["Cartella"].get("enabled", True))
        self.assertIn("Rinomina", menu.open("_Nota", "Cartella"))

    def test_keys_work_as_with_the_menus_in_the_window(self):
        program = self.program
        # Of the dispatcher, of menus, of the standard editing, and once more after the window was closed.
        program.keys("ctrl+Up")
        wait_for("the note before", lambda: program.title() == "a")
        program.keys("ctrl+plus")
        wait_for("the larger text", lambda: self.preference("fontSize") == 14)
        program.keys("ctrl+f")
        wait_for("the find bar", lambda: program.find("text", "Trova"))
        program.keys("Escape", "ctrl+End")
        program.type("!")
        wait_for("the text", lambda: self.read("a.json").endswith("!"))
        program.keys("ctrl+z")
        wait_for("the text from before", lambda: not self.read("a.json").endswith("!"))

        program.keys("ctrl+w")
        wait_for("the window to close", lambda: program.find_window() is None)
        self.assertEqual(program.start_again(), 0)
        program.window = wait_for("the window", program.find_window)
        wait_for("the focus", program.is_active)
        menu = wait_for("the menus", lambda: self.registrar.menus.get(int(program.window)))
        self.assertIn("_Nota", menu.open())
        before = len(program.rows())
        program.keys("ctrl+n")
        wait_for("a new note", lambda: len(program.rows()) == before + 1)

    def test_the_menus_show_a_shortcut_that_was_just_recorded(self):
        program = self.program
        program.keys("ctrl+comma")
        program.click_button("Scorciatoie", "page tab")
        program.click_button("Cerca note: ⌘K")
        wait_for("the recording", lambda: program.find_button("Cerca note: Premi i tasti…"))
        program.keys("ctrl+j")
        wait_for("the shortcut", lambda: self.menu.open("_Nota")["Cerca note"]["shortcut"] == [["Control", "J"]])
        program.click_button("Cerca note: ⌘J")
        program.keys("BackSpace")
        wait_for("no shortcut", lambda: "shortcut" not in self.menu.open("_Nota")["Cerca note"])


if __name__ == "__main__":
    unittest.main()
