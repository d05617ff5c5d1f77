"""What `cmake --install` puts below its prefix: every file, and each one valid by its own validator."""

import configparser
import gzip
import os
import subprocess
import unittest
import xml.etree.ElementTree as xml

PREFIX = os.environ["QUILLARY_INSTALLED"]
VERSION = os.environ["QUILLARY_VERSION"]
ID = "app.quillary.Quillary"

DESKTOP_FILE = f"share/applications/{ID}.desktop"
ICON = f"share/icons/hicolor/scalable/apps/{ID}.svg"
SYMBOLIC_ICON = f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg"
METAINFO = f"share/metainfo/{ID}.metainfo.xml"
SERVICE = f"share/dbus-1/services/{ID}.service"
MANUAL = "share/man/man1/quillary.1.gz"
CHANGELOG = "share/doc/quillary/changelog.gz"


def installed(name):
    return os.path.join(PREFIX, name)


def read_entries(name):
    parser = configparser.ConfigParser(interpolation=None, delimiters=["="])
    parser.optionxform = str
    parser.read(installed(name), encoding="utf-8")
    return parser


class InstalledTree(unittest.TestCase):
    maxDiff = None

    def expect_valid(self, *command):
        done = subprocess.run(command, capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return done.stdout + done.stderr

    def test_it_holds_these_files_and_no_others(self):
        found = sorted(os.path.relpath(os.path.join(folder, name), PREFIX)
                       for folder, _, names in os.walk(PREFIX) for name in names)
        self.assertEqual(found, sorted(["bin/quillary", DESKTOP_FILE, ICON, SYMBOLIC_ICON, METAINFO, SERVICE, MANUAL,
                                        CHANGELOG, "share/doc/quillary/copyright"]))

    def test_only_the_program_may_be_executed(self):
        for folder, _, names in os.walk(PREFIX):
            for name in names:
                path = os.path.join(folder, name)
                self.assertEqual(os.access(path, os.X_OK) or os.stat(path).st_mode & 0o111 != 0,
                                 path == installed("bin/quillary"), path)

    def test_the_desktop_file_is_valid_and_offers_its_actions_in_both_languages(self):
        self.assertEqual(self.expect_valid("desktop-file-validate", installed(DESKTOP_FILE)), "")
        entries = read_entries(DESKTOP_FILE)
        main = entries["Desktop Entry"]
        self.assertEqual(main["DBusActivatable"], "true")
        self.assertEqual(main["Icon"], ID)
        for key in ("GenericName", "Comment", "Keywords"):
            self.assertIn(key, main)
            self.assertIn(key + "[it]", main)
        actions = [name for name in main["Actions"].split(";") if name]
        self.assertEqual(actions, ["new-note", "new-note-from-clipboard"])
        for name in actions:
            action = entries["Desktop Action " + name]
            self.assertTrue(action["Name"] and action["Name[it]"])
            self.assertRegex(action["Exec"], rf"^gdbus call .* --dest {ID} .*\.ActivateAction {name} \[\] {{}}$")

    def test_the_metainfo_is_valid_and_tells_this_version(self):
        self.expect_valid("appstreamcli", "validate", "--no-net", installed(METAINFO))
        component = xml.parse(installed(METAINFO)).getroot()
        self.assertEqual(component.findtext("id"), ID)
        self.assertEqual(component.findtext("launchable"), os.path.basename(DESKTOP_FILE))
        self.assertEqual(component.find("releases/release").get("version"), VERSION)

    def test_the_bus_finds_the_program_where_it_was_installed(self):
        service = read_entries(SERVICE)["D-BUS Service"]
        self.assertEqual(service["Name"], ID)
        self.assertEqual(service["Exec"], installed("bin/quillary"))

    def test_the_icons_are_drawings_of_their_sizes_without_foreign_parts(self):
        for name, side in ((ICON, 128), (SYMBOLIC_ICON, 16)):
            root = xml.parse(installed(name)).getroot()
            self.assertEqual(root.get("viewBox"), f"0 0 {side} {side}", name)
            for element in root.iter():
                self.assertNotIn(element.tag.rpartition("}")[2], ("image", "script", "style", "text"), name)
        # Desktops colour a symbolic icon by its fill: it has one colour and no stroke.
        symbolic = xml.parse(installed(SYMBOLIC_ICON)).getroot()
        for element in symbolic.iter():
            self.assertNotIn("stroke", element.attrib)

    def test_the_manual_tells_this_version_and_every_action_and_reads_without_warnings(self):
        with gzip.open(installed(MANUAL), "rt", encoding="utf-8") as file:
            text = file.read()
        self.assertIn(f'"Quillary {VERSION}"', text)
        for action in ("new\\-note\n", "new\\-note\\-from\\-clipboard\n"):
            self.assertIn(".B " + action, text)
        shown = subprocess.run(["man", "--warnings", "--local-file", installed(MANUAL)], capture_output=True, text=True,
                               env=dict(os.environ, LANG="C.UTF-8", MANPAGER="cat"))
        self.assertEqual((shown.returncode, shown.stderr), (0, ""))
        self.assertIn("new-note-from-clipboard", shown.stdout)

    def test_the_compressed_files_are_the_same_for_everybody(self):
        for name in (MANUAL, CHANGELOG):
            with open(installed(name), "rb") as file:
                header = file.read(10)
            self.assertEqual((header[3], header[4:8]), (0, bytes(4)), f"{name} holds a name or a time")


if __name__ == "__main__":
    unittest.main()
