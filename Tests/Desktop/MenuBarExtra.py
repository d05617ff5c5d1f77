"""The mark in the desktop's panel, its menu as a panel reads it, and what closing the window means with and without it."""

import glob
import os
import subprocess
import unittest

from gi.repository import GLib

from desktop import DesktopTest
from program import Quillary
from screen import find_window, wait_for
from services import Menu, Service, text_of


class Panel(Service):
    """A panel of a desktop. It lists the items that are there now."""

    name = "org.kde.StatusNotifierWatcher"
    path = "/StatusNotifierWatcher"
    interface = """
      <interface name="org.kde.StatusNotifierWatcher">
        <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
        <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
        <property name="ProtocolVersion" type="i" access="read"/>
        <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
        <signal name="StatusNotifierHostRegistered"/>
      </interface>"""

    def __init__(self):
        self.items = []
        super().__init__()

    def called(self, sender, method, arguments):
        if method == "RegisterStatusNotifierItem":
            self.items.append((arguments[0] if arguments[0][:1] != "/" else sender, sender))

    def property(self, name):
        return {"IsStatusNotifierHostRegistered": GLib.Variant("b", True), "ProtocolVersion": GLib.Variant("i", 0),
                "RegisteredStatusNotifierItems": GLib.Variant("as", [])}[name]

    def ended(self, name):
        self.items = [item for item in self.items if name not in item]

    # What a panel asks an item for

    def item(self, name):
        return self.ask(self.items[-1][0], "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", name)))[0]

    def menu(self):
        return Menu(self, self.items[-1][0], self.item("Menu"))

    def texts(self):
        return [text_of(properties) for _, properties in self.menu().entries()]


class Namesake(Service):
    """Has the program's name and answers nothing: no second start reaches the first."""

    name = "app.quillary.Quillary"
    path = "/nobody"
    interface = '<interface name="nobody.Nobody"/>'


class MenuBarExtra(DesktopTest):
    def setUp(self):
        super().setUp()
        self.preferences["sortOrder"] = "title"
        for age, name in enumerate(("b.md", "Lavoro/c_d.md", "a.md")):
            self.write(name, name)
            os.utime(self.notes + "/" + name, (1_700_000_000 - age, 1_700_000_000 - age))

    def open_panel(self):
        panel = Panel()
        self.addCleanup(panel.close)
        return panel

    def files(self):
        return glob.glob("**/*.md", root_dir=self.notes, recursive=True)

    @staticmethod
    def expect_hidden(program):
        wait_for("the window to go", lambda: program.find_window() is None)

    @staticmethod
    def expect_shown(program):
        program.window = wait_for("the window", program.find_window)
        wait_for("the focus", program.is_active)

    def test_stands_in_a_panel_that_starts_later_with_all_its_entries(self):
        program = self.start()
        panel = self.open_panel()
        wait_for("the item", lambda: panel.items)
        self.assertEqual(panel.item("Status"), "Active")
        self.assertIn((22, 22), [(width, height) for width, height, _ in panel.item("IconPixmap")])
        wait_for("the entries", lambda: panel.texts() == [
            "Mostra Quillary", "-", "Nuova nota", "Nuova nota dagli appunti", "-", "Recenti", "b", "c__d  —  Lavoro", "a",
            "-", "Impostazioni…", "Esci da Quillary"])
        entries = panel.menu().open()
        self.assertEqual(entries["Mostra Quillary"]["shortcut"], [["Super", "Alt", "N"]])
        self.assertFalse(entries["Recenti"]["enabled"])

        program.keys("ctrl+w")
        self.expect_hidden(program)
        panel.menu().choose("Mostra Quillary")
        self.expect_shown(program)

        program.keys("ctrl+w")
        self.expect_hidden(program)
        panel.menu().choose("c__d  —  Lavoro")
        self.expect_shown(program)
        wait_for("the note", lambda: program.title() == "c_d")
        panel.menu().choose("Nuova nota")
        wait_for("a new file", lambda: len(os.listdir(self.notes + "/Lavoro")) == 2)
        wait_for("it under the recent ones", lambda: panel.texts()[6] not in ("a", "b", "c__d  —  Lavoro"))

        panel.menu().choose("Impostazioni…")
        wait_for("the settings", lambda: find_window("^Impostazioni"))
        panel.menu().choose("Esci da Quillary")
        self.assertEqual(program.process.wait(timeout=20), 0)

    def test_goes_and_comes_with_the_preference_and_the_panel(self):
        panel = self.open_panel()
        program = self.start()
        wait_for("the item", lambda: panel.items)
        program.keys("ctrl+comma")
        toggle = "Mostra Quillary nella barra dei menu"
        for expected in (False, True):
            program.click_button(toggle)
            wait_for("the item to change", lambda: bool(panel.items) == expected)
        self.assertIsNotNone(program.find_window())

        panel.close()
        panel = self.open_panel()
        wait_for("the item", lambda: panel.items)

    def test_closing_ends_the_program_where_nothing_could_bring_it_back(self):
        # Without a session bus there is neither a panel nor a second start that would be heard.
        self.set_environment("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null")

        program = Quillary(self.home, self.preferences)
        self.addCleanup(program.close)
        wait_for("the focus", program.is_active)
        program.keys("ctrl+w")
        self.expect_hidden(program)
        program.keys("super+alt+n")
        self.expect_shown(program)
        program.keys("ctrl+q")
        self.assertEqual(program.process.wait(timeout=20), 0)

        self.preferences["disabledShortcuts"] = ["summon"]
        program = Quillary(self.home, self.preferences)
        self.addCleanup(program.close)
        wait_for("the focus", program.is_active)
        program.keys("ctrl+n")
        wait_for("a new file", lambda: len(self.files()) == 4)
        program.type("di getto")
        program.keys("ctrl+w")
        self.assertEqual(program.process.wait(timeout=20), 0)
        self.assertIn("di getto", [self.read(name) for name in self.files()])

    def test_a_closed_window_comes_back_when_its_last_way_back_goes(self):
        namesake = Namesake()
        self.addCleanup(namesake.close)
        panel = self.open_panel()
        program = self.start()
        wait_for("the item", lambda: panel.items)
        program.keys("ctrl+w")
        self.expect_hidden(program)

        # The hot key is left, which leads back.
        panel.close()
        program.keys("super+alt+n")
        self.expect_shown(program)
        program.close()

        # Nothing is left.
        self.preferences["disabledShortcuts"] = ["summon"]
        panel = self.open_panel()
        program = self.start()
        wait_for("the item", lambda: panel.items)
        program.keys("ctrl+w")
        self.expect_hidden(program)
        self.assertIsNone(program.process.poll())
        panel.close()
        self.expect_shown(program)

    def test_a_closed_window_comes_back_when_the_session_bus_ends(self):
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], stdout=subprocess.PIPE, text=True)
        self.addCleanup(bus.stdout.close)
        self.addCleanup(bus.wait)
        self.addCleanup(bus.kill)
        self.set_environment("DBUS_SESSION_BUS_ADDRESS", bus.stdout.readline().strip())
        self.preferences["disabledShortcuts"] = ["summon"]
        program = self.start()
        wait_for("the focus", program.is_active)
        program.keys("ctrl+w")
        self.expect_hidden(program)
        self.assertIsNone(program.process.poll())

        # A second start would have brought it back until now.
        bus.kill()
        self.expect_shown(program)
        program.keys("ctrl+w")
        self.assertEqual(program.process.wait(timeout=20), 0)


if __name__ == "__main__":
    unittest.main()
