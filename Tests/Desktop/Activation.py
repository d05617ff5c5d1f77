"""The installed program as desktops start it: by its name on the session bus, with and without an action."""

import os
import subprocess
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

    def test_the_bus_starts_the_installed_program_and_a_second_start_ends_at_once(self):
        self.write("a.md", "testo")
        program = self.start_by_bus("Activate", "{}")
        self.assertEqual(os.readlink(f"/proc/{program.process.pid}/exe"), PROGRAM)
        wait_for("the note", lambda: program.title() == "a")
        self.assertEqual(self.run_program(), 0)
        self.assertEqual(owner(), program.process.pid)
        call("Open", "[]", "{}")
        wait_for("the window in use", program.is_active)

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
