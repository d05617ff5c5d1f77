"""The installed program as desktops start it: by its name on the session bus, with and without an action."""

import ctypes
import os
import subprocess
import time
import unittest

from desktop import DesktopTest
from program import PROGRAM, Quillary
from screen import wait_for, xdotool

ID = "app.quillary.Quillary"


class StartedByTheBus(Quillary):
    """A program that the bus starts at the first call of its name."""

    class Process:
        def __init__(self, pid):
            self.pid = pid

    def __init__(self, home, environment, method, *arguments):
        self.home = home
        self.environment = environment
        subprocess.run(["dbus-update-activation-environment", *(f"{name}={value}" for name, value in environment.items())],
                       check=True)
        call(method, *arguments)
        self.process = self.Process(owner())
        self.window = wait_for("a window", self.find_window)

    def close(self):
        if owner() is not None:
            os.kill(self.process.pid, 15)
            wait_for("the end", lambda: owner() is None)


class Launcher:
    """A panel that starts programs and waits for the end of each start. Its library allows for one in a process."""

    PROPERTY_CHANGE_MASK = 1 << 22
    COMPLETED = 1

    def __init__(self):
        self.xlib = ctypes.CDLL("libX11.so.6")
        self.library = ctypes.CDLL("libstartup-notification-1.so.0")
        pointer, text, number = ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int
        listener = ctypes.CFUNCTYPE(None, pointer, pointer)
        for library, name, result, *arguments in (
                (self.xlib, "XOpenDisplay", pointer, text),
                (self.xlib, "XDefaultRootWindow", ctypes.c_ulong, pointer),
                (self.xlib, "XSelectInput", number, pointer, ctypes.c_ulong, ctypes.c_long),
                (self.xlib, "XPending", number, pointer),
                (self.xlib, "XNextEvent", number, pointer, pointer),
                (self.xlib, "XCloseDisplay", number, pointer),
                (self.library, "sn_display_new", pointer, pointer, pointer, pointer),
                (self.library, "sn_display_process_event", number, pointer, pointer),
                (self.library, "sn_monitor_context_new", pointer, pointer, number, listener, pointer, pointer),
                (self.library, "sn_monitor_event_get_type", number, pointer),
                (self.library, "sn_monitor_event_get_startup_sequence", pointer, pointer),
                (self.library, "sn_startup_sequence_get_id", text, pointer),
                (self.library, "sn_launcher_context_new", pointer, pointer, number),
                (self.library, "sn_launcher_context_initiate", None, pointer, text, text, ctypes.c_ulong),
                (self.library, "sn_launcher_context_get_startup_id", text, pointer)):
            getattr(library, name).restype = result
            getattr(library, name).argtypes = arguments
        self.ended = set()
        self.listener = listener(self.hear)
        self.connection = self.xlib.XOpenDisplay(None)
        self.xlib.XSelectInput(self.connection, self.xlib.XDefaultRootWindow(self.connection), self.PROPERTY_CHANGE_MASK)
        self.display = self.library.sn_display_new(self.connection, None, None)
        self.library.sn_monitor_context_new(self.display, 0, self.listener, None, None)

    def launch(self):
        """The user asks for the program now."""
        context = self.library.sn_launcher_context_new(self.display, 0)
        # The clock of the X server.
        self.time = int(time.monotonic() * 1000) & 0xFFFFFFFF
        self.library.sn_launcher_context_initiate(context, b"pannello", b"quillary", self.time)
        self.id = self.library.sn_launcher_context_get_startup_id(context).decode()

    def hear(self, event, _data):
        if self.library.sn_monitor_event_get_type(event) == self.COMPLETED:
            sequence = self.library.sn_monitor_event_get_startup_sequence(event)
            self.ended.add(self.library.sn_startup_sequence_get_id(sequence).decode())

    def has_heard_of_the_end(self):
        event = ctypes.create_string_buffer(192)
        while self.xlib.XPending(self.connection):
            self.xlib.XNextEvent(self.connection, event)
            self.library.sn_display_process_event(self.display, event)
        return self.id in self.ended

    def close(self):
        self.xlib.XCloseDisplay(self.connection)


def user_time(window):
    """When the user was last busy with a window, by the clock of the X server; 0 if nobody knows."""
    shown = subprocess.run(["xprop", "-id", window, "_NET_WM_USER_TIME"], capture_output=True, text=True, check=True).stdout
    return int(shown.partition("=")[2] or 0)


def bus(method, *arguments):
    return subprocess.run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                           "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus." + method, *arguments],
                          capture_output=True, text=True)


def owner():
    """The number of the process that has the name; none if nobody has."""
    answer = bus("GetConnectionUnixProcessID", ID)
    return int(answer.stdout.split()[1].rstrip(",)")) if answer.returncode == 0 else None


def call(method, *arguments):
    subprocess.run(["gdbus", "call", "--session", "--timeout", "60", "--dest", ID, "--object-path", "/app/quillary/Quillary",
                    "--method", "org.freedesktop.Application." + method, *arguments], check=True, stdout=subprocess.DEVNULL)


class Activation(DesktopTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.launcher = Launcher()
        cls.addClassCleanup(cls.launcher.close)

    def environment(self):
        wanted = ("DISPLAY", "QT_QPA_PLATFORM", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "DBUS_SESSION_BUS_ADDRESS")
        return {**{name: os.environ[name] for name in wanted if name in os.environ}, "HOME": self.home,
                "XDG_CONFIG_HOME": self.home + "/config", "XDG_STATE_HOME": self.home + "/state",
                "XDG_DATA_HOME": self.home + "/data", "LANG": "C.UTF-8", "TZ": "UTC"}

    def setUp(self):
        super().setUp()
        os.makedirs(self.home + "/config/quillary")
        with open(self.home + "/config/quillary/preferences.json", "w", encoding="utf-8") as file:
            file.write('{"notesDirectory": "%s"}' % self.notes)

    def start_by_bus(self, method, *arguments):
        program = StartedByTheBus(self.home, self.environment(), method, *arguments)
        self.addCleanup(program.close)
        self.addCleanup(self.display.picture, self.id())
        return program

    def contents(self):
        found = []
        for name in sorted(os.listdir(self.notes)):
            if not name.startswith("."):
                found.append(self.read(name))
        return found

    def put_on_clipboard(self, text):
        holder = subprocess.Popen(["xclip", "-selection", "clipboard", "-quiet"], stdin=subprocess.PIPE,
                                  stderr=subprocess.DEVNULL)
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        holder.stdin.write(text.encode())
        holder.stdin.close()
        wait_for("the clipboard", lambda: subprocess.run(["xclip", "-selection", "clipboard", "-o"], capture_output=True,
                                                         text=True).stdout == text)

    def run_command(self, command):
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)

    def run_program(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], env=dict(os.environ, **self.environment()), timeout=30).returncode

    def expect_launched(self, program):
        """The window has come up with the time of the launcher, which waits no longer."""
        wait_for("the end of the start", self.launcher.has_heard_of_the_end)
        program.window = wait_for("the window", program.find_window)
        wait_for("the time of the start", lambda: user_time(program.window) >= self.launcher.time)
        wait_for("the window in use", program.is_active)

    def test_the_bus_starts_the_installed_program_and_a_second_start_ends_at_once(self):
        self.write("a.md", "testo")
        program = self.start_by_bus("Activate", "{}")
        self.assertEqual(os.readlink(f"/proc/{program.process.pid}/exe"), PROGRAM)
        wait_for("the note", lambda: program.title() == "a")
        self.assertEqual(self.run_program(), 0)
        self.assertEqual(owner(), program.process.pid)
        call("Open", "[]", "{}")
        wait_for("the window in use", program.is_active)

    def test_launchers_say_when_the_user_asked_and_hear_that_the_window_is_up(self):
        self.launcher.launch()
        program = self.start_by_bus("Activate", "{'desktop-startup-id': <'%s'>}" % self.launcher.id)
        self.expect_launched(program)

        self.launcher.launch()
        call("Activate", "{'desktop-startup-id': <'%s'>}" % self.launcher.id)
        self.expect_launched(program)

    def test_a_start_that_seems_to_come_from_the_future_tells_no_time(self):
        program = self.start_by_bus("Activate", "{}")
        self.launcher.launch()
        future = self.launcher.time + 1_000_000
        call("Activate", "{'desktop-startup-id': <'altrove_TIME%s'>}" % future)
        call("Activate", "{'desktop-startup-id': <'%s'>}" % self.launcher.id)
        self.expect_launched(program)
        self.assertLess(user_time(program.window), future)

    def test_a_second_start_hands_over_what_its_launcher_said(self):
        program = self.start_by_bus("Activate", "{}")
        wait_for("the window in use", program.is_active)
        program.keys("ctrl+w")
        wait_for("the window to close", lambda: program.find_window() is None)
        self.launcher.launch()
        self.set_environment("DESKTOP_STARTUP_ID", self.launcher.id)
        self.assertEqual(self.run_program(), 0)
        self.expect_launched(program)

    def test_the_first_call_may_be_an_action(self):
        program = self.start_by_bus("ActivateAction", "new-note", "[]", "{}")
        wait_for("a note", lambda: self.contents() == [""])
        wait_for("the focus", program.is_active)
        # What is typed goes into it.
        wait_for("the text view", lambda: program.find("text"))
        program.type("di getto")
        wait_for("the text", lambda: self.contents() == ["di getto"])

    def test_actions_make_notes_in_the_running_program_and_bring_it_up(self):
        program = self.start_by_bus("Activate", "{}")
        xdotool("windowminimize", program.window)
        wait_for("the icon", lambda: not program.is_active())
        self.put_on_clipboard("dagli appunti")
        call("ActivateAction", "new-note-from-clipboard", "[]", "{}")
        wait_for("the note", lambda: self.contents() == ["dagli appunti"])
        wait_for("the window in use", program.is_active)
        call("ActivateAction", "no-such-action", "[]", "{}")
        call("ActivateAction", "new-note", "[]", "{}")
        wait_for("one more note", lambda: sorted(self.contents()) == ["", "dagli appunti"])

    def test_the_commands_of_the_desktop_file_do_the_same(self):
        program = self.start_by_bus("Activate", "{}")
        with open(os.environ["XDG_DATA_DIRS"].split(":")[0] + f"/applications/{ID}.desktop", encoding="utf-8") as file:
            commands = [line.removeprefix("Exec=").split() for line in file if line.startswith("Exec=gdbus")]
        self.assertEqual(len(commands), 2)
        self.put_on_clipboard("dagli appunti")
        for command in commands:
            self.run_command(command)
        wait_for("two notes", lambda: sorted(self.contents()) == ["", "dagli appunti"])
        self.assertEqual(owner(), program.process.pid)


if __name__ == "__main__":
    unittest.main()
