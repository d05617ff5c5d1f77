"""The mark in the desktop's panel, its menu as a panel reads it, and what closing the window means with and without it."""

import glob
import os
import threading
import unittest

from gi.repository import Gio, GLib

from desktop import DesktopTest
from program import Quillary
from screen import find_window, wait_for

WATCHER = """
<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>
"""


class Panel:
    """A panel of a desktop, on the session bus of this test. It lists the items that are there now."""

    def __init__(self):
        self.items = []
        self.ready = threading.Event()
        self.thread = threading.Thread(target=self.run, daemon=True)
        self.thread.start()
        assert self.ready.wait(20)
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def run(self):
        context = GLib.MainContext()
        context.push_thread_default()
        self.loop = GLib.MainLoop(context)
        connection = Gio.DBusConnection.new_for_address_sync(
            os.environ["DBUS_SESSION_BUS_ADDRESS"], Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
        interface = Gio.DBusNodeInfo.new_for_xml(WATCHER).interfaces[0]
        connection.register_object("/StatusNotifierWatcher", interface, self.call, self.property, None)
        connection.signal_subscribe("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                                    "/org/freedesktop/DBus", None, Gio.DBusSignalFlags.NONE, self.owner_changed)
        connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                             GLib.Variant("(su)", ("org.kde.StatusNotifierWatcher", 0)), None,
                             Gio.DBusCallFlags.NONE, -1, None)
        self.ready.set()
        self.loop.run()
        connection.close_sync()

    def call(self, _connection, sender, _path, _interface, method, parameters, invocation):
        if method == "RegisterStatusNotifierItem":
            self.items.append((parameters[0] if parameters[0][:1] != "/" else sender, sender))
        invocation.return_value(None)

    def property(self, _connection, _sender, _path, _interface, name):
        return {"IsStatusNotifierHostRegistered": GLib.Variant("b", True), "ProtocolVersion": GLib.Variant("i", 0),
                "RegisteredStatusNotifierItems": GLib.Variant("as", [])}[name]

    def owner_changed(self, _connection, _sender, _path, _interface, _signal, parameters):
        name, _, owner = parameters
        if not owner:
            self.items = [item for item in self.items if name not in item]

    def close(self):
        self.loop.quit()
        self.thread.join()

    # What a panel asks an item for

    def ask(self, path, interface, method, arguments):
        return self.bus.call_sync(self.items[-1][0], path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                  5000, None).unpack()

    def item(self, name):
        return self.ask("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                        GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", name)))[0]

    def menu(self):
        """The entries on show as (number, properties)."""
        _, (_, _, entries) = self.ask(self.item("Menu"), "com.canonical.dbusmenu", "GetLayout",
                                      GLib.Variant("(iias)", (0, 1, [])))
        return [(number, properties) for number, properties, _ in entries if properties.get("visible", True)]

    def texts(self):
        return ["-" if properties.get("type") == "separator" else properties["label"]
                for _, properties in self.menu()]

    def choose(self, text):
        number = next(number for number, properties in self.menu() if properties.get("label") == text)
        self.ask(self.item("Menu"), "com.canonical.dbusmenu", "Event",
                 GLib.Variant("(isvu)", (number, "clicked", GLib.Variant("s", ""), 0)))


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
        entries = dict((properties.get("label"), properties) for _, properties in panel.menu())
        self.assertEqual(entries["Mostra Quillary"]["shortcut"], [["Super", "Alt", "N"]])
        self.assertFalse(entries["Recenti"]["enabled"])

        program.keys("ctrl+w")
        self.expect_hidden(program)
        panel.choose("Mostra Quillary")
        self.expect_shown(program)

        program.keys("ctrl+w")
        self.expect_hidden(program)
        panel.choose("c__d  —  Lavoro")
        self.expect_shown(program)
        wait_for("the note", lambda: program.title() == "c_d")
        panel.choose("Nuova nota")
        wait_for("a new file", lambda: len(os.listdir(self.notes + "/Lavoro")) == 2)
        wait_for("it under the recent ones", lambda: panel.texts()[6] not in ("a", "b", "c__d  —  Lavoro"))

        panel.choose("Impostazioni…")
        wait_for("the settings", lambda: find_window("^Impostazioni"))
        panel.choose("Esci da Quillary")
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


if __name__ == "__main__":
    unittest.main()
