"""Keys on a real display: the hot key beside another program, layouts, and shortcuts recorded in the settings."""

import ctypes
import json
import subprocess
import unittest

from desktop import DesktopTest
from program import EDITOR, has_state
from screen import activate, ask_xdotool, find_window, wait_for, xdotool

SUMMON = "super+alt+n"

# Keys by their place, as X11 numbers them.
KEY_1, KEY_EQUAL, KEY_Y, KEY_Z = "10", "21", "29", "52"


class OtherProgram:
    """A window of another program, which prints the keys that it gets."""

    def __init__(self):
        self.process = subprocess.Popen(["xev", "-name", "altro", "-event", "keyboard"], stdout=subprocess.PIPE)
        self.window = wait_for("another program", lambda: find_window("^altro$"))
        activate(self.window)

    def close(self):
        self.process.terminate()
        self.process.stdout.close()
        self.process.wait()


class KeyOwner:
    """A program that has a combination of keys for itself."""

    def __init__(self, key):
        self.xlib = ctypes.CDLL("libX11.so.6")
        self.xlib.XOpenDisplay.restype = ctypes.c_void_p
        for function in (self.xlib.XDefaultRootWindow, self.xlib.XSync, self.xlib.XCloseDisplay, self.xlib.XGrabKey):
            function.argtypes = [ctypes.c_void_p]
        self.xlib.XDefaultRootWindow.restype = ctypes.c_ulong
        self.xlib.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        self.xlib.XGrabKey.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int,
                                       ctypes.c_int, ctypes.c_int]
        self.display = self.xlib.XOpenDisplay(None)
        any_modifier, asynchronous = 1 << 15, 1
        self.xlib.XGrabKey(self.display, key, any_modifier, self.xlib.XDefaultRootWindow(self.display), 1,
                           asynchronous, asynchronous)
        self.xlib.XSync(self.display, 0)

    def close(self):
        self.xlib.XCloseDisplay(self.display)


class Keyboard(DesktopTest):
    def setUp(self):
        super().setUp()
        self.preferences["sortOrder"] = "title"
        self.addCleanup(self.layout, "us")

    @staticmethod
    def layout(name):
        subprocess.run(["setxkbmap", name], check=True)

    def custom(self, **shortcuts):
        """Gives actions shortcuts of the user's, by key code, modifiers and character."""
        self.preferences["shortcuts"] = json.dumps(
            {action: {"keyCode": code, "modifiers": modifiers, "key": key}
             for action, (code, modifiers, key) in shortcuts.items()})

    def start_with_notes(self):
        for name in ("a", "b", "c"):
            self.write(name + ".md", name)
        program = self.start()
        program.expect_rows(["a", "b", "c"])
        program.open_note("a")
        return program

    def leave(self, program, other):
        """Goes over to another program, until Quillary knows that it is not in use any more."""
        activate(other.window)
        wait_for("the focus to go", lambda: not program.has_focus("text", EDITOR))

    def expect_summoned(self, program):
        program.window = wait_for("the window", program.find_window)
        wait_for("the keyboard", lambda: self.has_keyboard(program))
        # Only then the program itself knows that it is the one in use.
        wait_for("the focus", lambda: program.has_focus("text", EDITOR))

    @staticmethod
    def has_keyboard(program):
        return ask_xdotool("getwindowfocus") == [program.window]

    @staticmethod
    def place(program):
        return ask_xdotool("getwindowgeometry", program.window)

    def expect_hidden(self, program):
        wait_for("the window to go", lambda: program.find_window() is None and not self.has_keyboard(program))

    # The settings

    def open_shortcuts(self, program):
        program.keys("ctrl+comma")
        self.settings = wait_for("the settings", self.find_settings)
        activate(self.settings)
        program.click_button("Scorciatoie")
        wait_for("the shortcuts", lambda: program.find("check box", "Nota successiva: ⌘↓"))

    @staticmethod
    def find_settings():
        return find_window("^Impostazioni")

    def record(self, program, name, shown):
        """Starts the recording of an action that shows a shortcut now."""
        program.click_button(f"{name}: {shown}")
        wait_for("the recording", lambda: program.find("check box", name + ": Premi i tasti…"))

    @staticmethod
    def expect_shown(program, name, shown):
        wait_for(f"{name}: {shown}", lambda: program.find("check box", f"{name}: {shown}"))

    def test_escape_closes_an_open_list_and_only_then_the_settings(self):
        program = self.start_with_notes()
        program.keys("ctrl+comma")
        wait_for("the settings", self.find_settings)
        theme = wait_for("the themes", lambda: program.find("combo box", "Sistema"))
        for _ in range(2):
            program.click_node(theme)
            wait_for("the list", lambda: has_state(theme, "EXPANDED"))
            program.keys("Escape")
            wait_for("no list", lambda: not has_state(theme, "EXPANDED"))
            self.assertTrue(self.find_settings())
        program.keys("Escape")
        wait_for("no settings", lambda: not self.find_settings())

    # The hot key

    def test_the_hot_key_summons_and_hides_whatever_has_the_keyboard(self):
        program = self.start_with_notes()
        other = OtherProgram()
        self.addCleanup(other.close)
        for lock in (None, "Num_Lock", "Caps_Lock"):
            with self.subTest(lock=lock):
                self.leave(program, other)
                if lock:
                    program.keys(lock)
                program.keys(SUMMON)
                self.expect_summoned(program)
                place = self.place(program)
                program.keys(SUMMON)
                self.expect_hidden(program)
                program.keys(SUMMON)
                self.expect_summoned(program)
                wait_for("its place", lambda: self.place(program) == place)
        program.keys("Caps_Lock", "Num_Lock")

        # Out of its icon, and anew when it was closed; the focus is in the text.
        xdotool("windowminimize", "--sync", program.window)
        program.keys(SUMMON)
        self.expect_summoned(program)
        program.keys("ctrl+w")
        self.expect_hidden(program)
        program.keys(SUMMON)
        self.expect_summoned(program)
        program.keys("ctrl+End")
        program.type("!")
        wait_for("the text", lambda: self.read("a.md") == "a!")

        # The other program never saw the key.
        activate(other.window)
        program.keys("x")
        other.process.terminate()
        self.assertNotIn("keysym 0x6e, n", other.process.communicate()[0].decode())

    def test_the_hot_key_is_a_key_and_no_character(self):
        self.custom(summon=(6, 0x180000, "z"))
        program = self.start_with_notes()
        other = OtherProgram()
        self.addCleanup(other.close)
        for layout in ("us", "de", "it"):
            with self.subTest(layout=layout):
                self.layout(layout)
                self.leave(program, other)
                program.keys("ctrl+alt+" + KEY_Y)
                program.keys("ctrl+alt+" + KEY_Z)
                self.expect_summoned(program)

    def test_a_taken_combination_is_told_until_another_one_is_chosen(self):
        owner = KeyOwner(57)
        self.addCleanup(owner.close)
        program = self.start_with_notes()
        self.open_shortcuts(program)
        warning = "La scorciatoia globale è già usata da un'altra app: scegline un'altra."
        wait_for("the warning", lambda: program.find("label", warning))
        self.display.picture(self.id() + ".warning")

        self.record(program, "Mostra Quillary da qualsiasi app", "⌃⌥N")
        program.keys("super+alt+j")
        self.expect_shown(program, "Mostra Quillary da qualsiasi app", "⌃⌥J")
        wait_for("the warning to go", lambda: program.find("label", warning) is None)
        program.keys("Escape")
        wait_for("the settings to close", lambda: self.find_settings() is None)
        other = OtherProgram()
        self.addCleanup(other.close)
        self.leave(program, other)
        program.keys("super+alt+j")
        self.expect_summoned(program)

    # Keys of the window

    def test_layouts_decide_over_characters_and_not_over_keys(self):
        self.custom(search=(16, 0x180000, "y"))
        self.preferences["fontSize"] = 13
        program = self.start_with_notes()
        # The key beside the digits is "=" or a letter; in German it is an accent that waits for one.
        for layout, undo, equal, size in (("us", KEY_Z, [KEY_EQUAL], 14), ("de", KEY_Y, [], 14),
                                          ("it", KEY_Z, [KEY_EQUAL], 14)):
            with self.subTest(layout=layout):
                self.layout(layout)
                # By character: a digit, the undo of the menu, the sign of equality.
                program.keys("ctrl+12")
                wait_for("the third note", lambda: program.title() == "c")
                program.keys("ctrl+" + KEY_1)
                wait_for("the first note", lambda: program.title() == "a")
                program.keys("ctrl+End", "x")
                wait_for("the text", lambda: self.read("a.md") == "ax")
                program.keys("ctrl+" + undo)
                wait_for("the text from before", lambda: self.read("a.md") == "a")
                program.keys(*("ctrl+" + key for key in equal), "ctrl+Home")
                # By key, whatever it is called in the layout.
                program.keys("ctrl+alt+" + KEY_Y)
                wait_for("the search field", lambda: program.has_focus("text", "Cerca"))
                self.assertEqual(self.preference("fontSize"), size)
                program.keys("Escape")
                program.click_row("a")

    # Recording

    def test_records_what_menus_and_the_hot_key_have(self):
        program = self.start_with_notes()
        self.open_shortcuts(program)
        self.record(program, "Cerca note", "⌘K")
        self.display.picture(self.id() + ".recording")
        program.keys("a")
        wait_for("the message", lambda: program.find("label", "Usa almeno uno tra ⌘ ⌥ ⌃"))
        program.keys("ctrl+n")
        self.expect_shown(program, "Cerca note", "⌘N")
        self.assertEqual(json.loads(self.preference("shortcuts"))["search"],
                         {"keyCode": 45, "modifiers": 0x100000, "key": "n"})
        self.assertEqual(len(program.rows()), 3)

        self.record(program, "Mostra / nascondi anteprima", "⇧⌘P")
        program.keys("ctrl+n")
        wait_for("the message", lambda: program.find("label", "Già usata da «Cerca note»"))
        self.display.picture(self.id() + ".conflict")
        program.keys(SUMMON)
        wait_for("the message", lambda: program.find("label", "Già usata da «Mostra Quillary da qualsiasi app»"))
        self.assertIsNotNone(self.find_settings())
        program.keys("Escape")
        self.expect_shown(program, "Mostra / nascondi anteprima", "⇧⌘P")

        self.record(program, "Nota successiva", "⌘↓")
        program.keys("BackSpace")
        self.expect_shown(program, "Nota successiva", "Nessuna")
        program.click_button("Ripristina predefinita (⌘↓)")
        self.expect_shown(program, "Nota successiva", "⌘↓")

        # A recording ends with its window, and the hot key works again.
        self.record(program, "Nota successiva", "⌘↓")
        program.keys("alt+F4")
        wait_for("the settings to close", lambda: self.find_settings() is None)
        activate(program.window)
        self.expect_summoned(program)
        program.keys(SUMMON)
        self.expect_hidden(program)
        program.keys(SUMMON)
        self.expect_summoned(program)

        # The recorded key is the search's from now on.
        program.keys("ctrl+n")
        wait_for("the search field", lambda: program.has_focus("text", "Cerca"))
        self.assertEqual(len(program.rows()), 3)


if __name__ == "__main__":
    unittest.main()
