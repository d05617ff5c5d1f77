"""The sidebar as somebody meets it who doesn't see it, who has no mouse, or who drags with one on a real display."""

import json
import os
import tempfile
import unittest
from unittest import mock

from gi.repository import GLib

from desktop import DesktopTest
from program import Atspi, Quillary, extents, has_state, title_of
from screen import drag, held, wait_for, xdotool


class Sidebar(DesktopTest):
    def start_with_folders(self, **preferences):
        """Two folders, one of them closed and coloured, and three notes beside them, in order of their titles."""
        for name in ("Lavoro/Riunione.md", "Lavoro/Turni.md", "Viaggi/Lisbona.md", "Alfa.md", "Beta.txt", "Gamma.json"):
            self.write(name, f"testo di {name}\n")
        self.write(".quillary.json", json.dumps({"folderOrder": ["Lavoro", "Viaggi"], "collapsedFolders": ["Viaggi"],
                                                 "folderColors": {"Viaggi": "teal"}, "noteOrder": {}}))
        self.preferences.update({"sortOrder": "title"}, **preferences)
        program = self.start()
        program.expect_rows(self.all_rows)
        return program

    all_rows = ["Lavoro", "Riunione", "Turni", "Viaggi", "Note", "Alfa", "Beta", "Gamma"]

    @staticmethod
    def has_state(program, title, state):
        return has_state(program.row(title), state)

    def focus_list(self, program):
        """Takes the keyboard to the list as somebody without a mouse does."""
        program.keys("ctrl+k")
        wait_for("the search field", lambda: program.has_focus("text", "Cerca"))
        program.keys("Tab", "Tab")

    @staticmethod
    def await_cursor(program, title):
        wait_for(f"the cursor on {title}", lambda: has_state(program.find_row(title), "FOCUSED"))

    @staticmethod
    def open_menu(program):
        """Opens the context menu with the menu key; on the display it is one more window of the program."""
        before = len(program.windows())
        program.keys("Menu")
        wait_for("the menu", lambda: len(program.windows()) > before)

    @staticmethod
    def place(program, title, part=0.5):
        place = extents(program.row(title))
        return place.x + place.width // 3, place.y + int(place.height * part)

    def stored_layout(self):
        return json.loads(self.read(".quillary.json"))

    # What a screen reader finds

    def test_rows_say_what_they_are(self):
        program = self.start_with_folders()
        folder = program.row("Viaggi")
        self.assertEqual(folder.get_name(), "Viaggi, 1 nota")
        self.assertEqual(folder.get_description(), "Cartella, Verde acqua")
        self.assertEqual(program.row("Lavoro").get_name(), "Lavoro, 2 note")
        self.assertEqual(folder.get_role_name(), "list item")
        self.assertEqual(program.row("Note").get_role_name(), "heading")
        wait_for("the text", lambda: program.row("Gamma").get_description() == "JSON, testo di Gamma.json")
        self.assertTrue(self.has_state(program, "Viaggi", "EXPANDABLE"))
        self.assertFalse(self.has_state(program, "Viaggi", "EXPANDED"))
        self.assertTrue(self.has_state(program, "Lavoro", "EXPANDED"))
        self.assertFalse(self.has_state(program, "Alfa", "EXPANDABLE"))
        self.assertFalse(self.has_state(program, "Note", "SELECTABLE"))
        self.assertTrue(has_state(program.find("list", "Note"), "MULTISELECTABLE"))

    def test_rows_say_what_is_selected(self):
        program = self.start_with_folders()
        program.click_row("Alfa")
        wait_for("the selection", lambda: self.has_state(program, "Alfa", "SELECTED"))
        with held("ctrl"):
            program.click_row("Turni")
        wait_for("two selected rows", lambda: all(self.has_state(program, title, "SELECTED")
                                                  for title in ("Alfa", "Turni")))
        self.assertFalse(self.has_state(program, "Beta", "SELECTED"))
        self.display.picture("SidebarMultiSelection")

    def test_a_row_can_be_pressed(self):
        program = self.start_with_folders()
        row = program.row("Gamma")
        names = [Atspi.Action.get_action_name(row, index) for index in range(Atspi.Action.get_n_actions(row))]
        self.assertIn("Press", names)
        Atspi.Action.do_action(row, names.index("Press"))
        wait_for("the title", lambda: program.title() == "Gamma")

    # Without a mouse

    def test_arrows_walk_over_notes_and_open_folders(self):
        program = self.start_with_folders()
        program.open_note("Alfa")
        self.focus_list(program)
        self.await_cursor(program, "Alfa")
        program.keys("Up")
        self.await_cursor(program, "Viaggi")
        program.keys("Right")
        program.expect_rows(self.all_rows[:4] + ["Lisbona"] + self.all_rows[4:])
        self.assertTrue(self.has_state(program, "Viaggi", "EXPANDED"))
        program.keys("Right")
        self.await_cursor(program, "Lisbona")
        wait_for("the title", lambda: program.title() == "Lisbona")
        program.keys("Left", "Left")
        program.expect_rows(self.all_rows)
        self.assertEqual(self.stored_layout()["collapsedFolders"], ["Viaggi"])

    def test_a_folder_is_renamed_and_coloured_by_its_menu(self):
        program = self.start_with_folders()
        program.open_note("Riunione")
        self.focus_list(program)
        self.await_cursor(program, "Riunione")
        program.keys("Left")
        self.await_cursor(program, "Lavoro")
        self.open_menu(program)
        self.display.picture("SidebarFolderMenu")
        program.keys("Down", "Down", "Return")
        wait_for("the field", lambda: program.row("Lavoro").get_child_count() == 1)
        program.type("Ufficio")
        self.display.picture("SidebarRename")
        program.keys("Return")
        program.expect_rows(["Ufficio"] + self.all_rows[1:])
        self.assertTrue(os.path.exists(self.notes + "/Ufficio/Turni.md"))

        self.await_cursor(program, "Ufficio")
        self.open_menu(program)
        # "Nessuno" comes first in the menu of colours, then red.
        program.keys("Down", "Down", "Down", "Right", "Down", "Return")
        wait_for("the colour", lambda: self.stored_layout()["folderColors"].get("Ufficio") == "red")
        wait_for("the description", lambda: program.row("Ufficio").get_description() == "Cartella, Rosso")

    def test_a_note_changes_its_format_and_its_folder_by_its_menu(self):
        program = self.start_with_folders()
        program.open_note("Beta")
        self.focus_list(program)
        self.await_cursor(program, "Beta")
        self.open_menu(program)
        program.keys("Down", "Down", "Right", "Down", "Return")
        wait_for("the file", lambda: os.path.exists(self.notes + "/Beta.md"))

        self.open_menu(program)
        # The top level comes first, where the note is already, then the folders in their order.
        program.keys("Down", "Down", "Down", "Right", "Return")
        wait_for("the file", lambda: os.path.exists(self.notes + "/Lavoro/Beta.md"))
        program.expect_rows(["Lavoro", "Beta"] + self.all_rows[1:6] + ["Gamma"])

    def test_the_cursor_and_the_menus_items_are_announced(self):
        program = self.start_with_folders()
        program.open_note("Alfa")
        self.focus_list(program)
        self.await_cursor(program, "Alfa")
        heard = []
        listener = Atspi.EventListener.new(lambda event: heard.append(event.source.get_name()) if event.detail1 else None)
        listener.register("object:state-changed:focused")
        self.addCleanup(listener.deregister, "object:state-changed:focused")

        def await_announcement(name):
            def is_heard():
                while GLib.MainContext.default().iteration(False):
                    pass
                return name in [title_of(text) for text in heard]
            wait_for(f"the announcement of {name}", is_heard)

        program.keys("Down")
        await_announcement("Beta")
        program.keys("Up", "Up")
        await_announcement("Viaggi")
        self.open_menu(program)
        program.keys("Down", "Down")
        await_announcement("Rinomina")
        program.keys("Escape")
        self.await_cursor(program, "Viaggi")

    # Drags on the real display

    def test_a_note_is_dragged_into_a_folder_and_beside_another(self):
        program = self.start_with_folders()
        drag(self.place(program, "Gamma"), self.place(program, "Viaggi"))
        wait_for("the file", lambda: os.path.exists(self.notes + "/Viaggi/Gamma.json"))
        rows = ["Lavoro", "Riunione", "Turni", "Viaggi", "Gamma", "Lisbona", "Note", "Alfa", "Beta"]
        program.expect_rows(rows)

        # Below the last note of a folder.
        drag(self.place(program, "Alfa"), self.place(program, "Turni", 0.8))
        wait_for("the file", lambda: os.path.exists(self.notes + "/Lavoro/Alfa.md"))
        program.expect_rows(["Lavoro", "Riunione", "Turni", "Alfa", "Viaggi", "Gamma", "Lisbona", "Note", "Beta"])
        wait_for("the order", lambda: self.stored_layout()["noteOrder"].get("Lavoro") == ["Riunione.md", "Turni.md", "Alfa.md"])

        # On the heading of the top level.
        drag(self.place(program, "Alfa"), self.place(program, "Note"))
        wait_for("the file", lambda: os.path.exists(self.notes + "/Alfa.md"))

    def test_a_folder_is_dragged_above_another(self):
        program = self.start_with_folders()
        drag(self.place(program, "Viaggi"), self.place(program, "Lavoro"))
        program.expect_rows(["Viaggi", "Lavoro", "Riunione", "Turni", "Note", "Alfa", "Beta", "Gamma"])
        wait_for("the order", lambda: self.stored_layout()["folderOrder"] == ["Viaggi", "Lavoro"])

    def test_what_is_dragged_below_the_last_row_comes_last(self):
        program = self.start_with_folders()
        drag(self.place(program, "Turni"), self.place(program, "Gamma", 1.4))
        wait_for("the file", lambda: os.path.exists(self.notes + "/Turni.md"))
        program.expect_rows(["Lavoro", "Riunione", "Viaggi", "Note", "Alfa", "Beta", "Gamma", "Turni"])

        drag(self.place(program, "Lavoro"), self.place(program, "Turni", 1.4))
        program.expect_rows(["Viaggi", "Lavoro", "Riunione", "Note", "Alfa", "Beta", "Gamma", "Turni"])
        wait_for("the order", lambda: self.stored_layout()["folderOrder"] == ["Viaggi", "Lavoro"])

    def test_several_notes_are_dragged_by_one_of_them(self):
        program = self.start_with_folders()
        program.click_row("Alfa")
        with held("ctrl"):
            program.click_row("Gamma")
        wait_for("the panel", lambda: program.find("label", "2 note selezionate"))
        drag(self.place(program, "Gamma"), self.place(program, "Viaggi"))
        wait_for("the files", lambda: all(os.path.exists(self.notes + "/Viaggi/" + name)
                                          for name in ("Alfa.md", "Gamma.json")))
        program.expect_rows(["Lavoro", "Riunione", "Turni", "Viaggi", "Alfa", "Gamma", "Lisbona", "Note", "Beta"])

    def test_escape_ends_a_drag_and_the_editor_gets_nothing(self):
        program = self.start_with_folders()
        drag(self.place(program, "Gamma"), self.place(program, "Lavoro"), ("key", "Escape", "mouseup", 1))
        drag(self.place(program, "Gamma"), (600, 400))
        # The next drag shows that the ones before have ended without an effect.
        drag(self.place(program, "Beta"), self.place(program, "Lavoro"))
        wait_for("the file", lambda: os.path.exists(self.notes + "/Lavoro/Beta.txt"))
        self.assertTrue(os.path.exists(self.notes + "/Gamma.json"))
        self.assertEqual(self.read("Gamma.json"), "testo di Gamma.json\n")
        self.assertEqual(self.read("Alfa.md"), "testo di Alfa.md\n")

    def test_another_program_finds_nothing_in_a_drag(self):
        program = self.start_with_folders()
        home = tempfile.TemporaryDirectory()
        self.addCleanup(home.cleanup)
        os.mkdir(home.name + "/Note")
        stranger = home.name + "/Note/Estranea.md"
        with open(stranger, "w", encoding="utf-8") as file:
            file.write("testo di Estranea\n")
        # On one bus the second program would be the first one's second start.
        with mock.patch.dict(os.environ, DBUS_SESSION_BUS_ADDRESS="unix:path=" + home.name + "/none"):
            other = Quillary(home.name, {"notesDirectory": home.name + "/Note", "sortOrder": "title"})
        self.addCleanup(other.close)
        wait_for("the stranger", lambda: other.title() == "Estranea")
        for window, x in ((other.window, 640), (program.window, 0)):
            xdotool("windowmove", "--sync", window, x, 20, "windowsize", window, 640, 700)
        wait_for("the row in its place", lambda: self.place(program, "Gamma")[0] < 640)
        row = 640 + 100, 20 + 90
        editor = 640 + 450, 20 + 250
        for place in (row, editor):
            drag(self.place(program, "Gamma"), place)
        self.display.picture("SidebarDragToAnotherProgram")
        # The next drag shows that the ones before have ended without an effect.
        drag(self.place(program, "Beta"), self.place(program, "Lavoro"))
        wait_for("the file", lambda: os.path.exists(self.notes + "/Lavoro/Beta.txt"))
        self.assertEqual(self.read("Gamma.json"), "testo di Gamma.json\n")
        other.close()
        self.assertEqual(sorted(os.listdir(home.name + "/Note")), ["Estranea.md"])
        with open(stranger, encoding="utf-8") as file:
            self.assertEqual(file.read(), "testo di Estranea\n")

    def test_a_drag_shows_where_it_goes(self):
        program = self.start_with_folders()
        with held("ctrl"):
            program.click_row("Turni")
        drag(self.place(program, "Turni"), self.place(program, "Beta", 0.8), ())
        self.display.picture("SidebarDrag")
        xdotool("key", "Escape", "mouseup", 1)


if __name__ == "__main__":
    unittest.main()
