"""Services on the session bus that stand for those of a desktop."""

import os
import threading

from gi.repository import Gio, GLib


class Service:
    """An interface on the session bus of this test, answered by a thread of its own."""

    name = path = interface = ""

    def __init__(self):
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
        interface = Gio.DBusNodeInfo.new_for_xml(f"<node>{self.interface}</node>").interfaces[0]
        connection.register_object(self.path, interface, self.answer, self.answer_property, None)
        connection.signal_subscribe("org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
                                    "/org/freedesktop/DBus", None, Gio.DBusSignalFlags.NONE, self.owner_changed)
        connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                             GLib.Variant("(su)", (self.name, 0)), None, Gio.DBusCallFlags.NONE, -1, None)
        self.ready.set()
        self.loop.run()
        connection.close_sync()

    def answer(self, _connection, sender, _path, _interface, method, parameters, invocation):
        invocation.return_value(self.called(sender, method, parameters.unpack()))

    def answer_property(self, _connection, _sender, _path, _interface, name):
        return self.property(name)

    def owner_changed(self, _connection, _sender, _path, _interface, _signal, parameters):
        name, _, owner = parameters
        if not owner:
            self.ended(name)

    def close(self):
        self.loop.quit()
        self.thread.join()

    def called(self, sender, method, arguments):
        """The answer to a call; nothing unless a service has one."""

    def property(self, name):
        """The value of a property."""

    def ended(self, name):
        """Somebody has left the bus."""

    def ask(self, owner, path, interface, method, arguments):
        """Asks another program on the bus."""
        return self.bus.call_sync(owner, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, 5000,
                                  None).unpack()


class Menu:
    """A menu that a program has on the bus, as panels read it."""

    INTERFACE = "com.canonical.dbusmenu"

    def __init__(self, service, owner, path):
        self.service = service
        self.owner = owner
        self.path = path

    def ask(self, method, signature, *arguments):
        return self.service.ask(self.owner, self.path, self.INTERFACE, method, GLib.Variant(signature, arguments))

    def entries(self, number=0):
        """The entries on show of a menu as (number, properties), as they are when it opens."""
        self.ask("AboutToShow", "(i)", number)
        _, (_, _, entries) = self.ask("GetLayout", "(iias)", number, 1, [])
        return [(entry, properties) for entry, properties, _ in entries if properties.get("visible", True)]

    def open(self, *path):
        """The entries of the menu that a way through the texts leads to, by text."""
        number = 0
        for text in path:
            number = self.number(text, number)
        return {text_of(properties): properties for _, properties in self.entries(number)}

    def number(self, text, menu=0):
        return next(number for number, properties in self.entries(menu) if text_of(properties) == text)

    def choose(self, *path):
        """Clicks the entry that a way through the texts leads to."""
        number = 0
        for text in path:
            number = self.number(text, number)
        self.ask("Event", "(isvu)", number, "clicked", GLib.Variant("s", ""), 0)


def text_of(properties):
    return "-" if properties.get("type") == "separator" else properties["label"]
