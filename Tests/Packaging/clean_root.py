#!/usr/bin/python3
"""The Debian package in a root that holds a minimal Debian and nothing else: it is installed there, started, used and purged.

    clean_root.py PACKAGE.deb

It needs the rights of root, debootstrap and a mirror of Debian, and half a gigabyte that it gives back."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
MIRROR = "http://deb.debian.org/debian"
RELEASE = "bookworm"
# What changes by itself when packages come and go, and what no package is the owner of.
CHANGING = ("/dev", "/proc", "/root", "/run", "/sys", "/tmp", "/var/cache", "/var/lib/apt", "/var/lib/dbus", "/var/lib/dpkg", "/var/log")
# What is mounted and started within ends with it, whatever happens.
NAMESPACE = ["unshare", "--mount", "--mount-proc", "--pid", "--fork", "--kill-child"]


class Root:
    """A folder with a Debian in it, and beside it the folder that it shares with the world."""

    def __init__(self, place):
        self.path = place + "/root"
        self.shared = place + "/shared"

    def build(self):
        subprocess.run(["debootstrap", "--variant=minbase", RELEASE, self.path, MIRROR], check=True, stdout=subprocess.DEVNULL)
        # As this machine reaches its packages.
        for name in ("etc/resolv.conf", "etc/apt/apt.conf.d/99artifact-registry"):
            if os.path.exists("/" + name):
                shutil.copy("/" + name, f"{self.path}/{name}")
        for name in (self.shared, self.path + self.shared):
            os.makedirs(name)

    def mount(self):
        """What a program finds in any system."""
        subprocess.run(["mount", "--bind", self.shared, self.path + self.shared], check=True)
        subprocess.run(["mount", "-t", "proc", "proc", self.path + "/proc"], check=True)

    def command(self, *words):
        return ["chroot", self.path, *words]

    def run(self, *words):
        environment = dict(os.environ, DEBIAN_FRONTEND="noninteractive", LC_ALL="C.UTF-8")
        done = subprocess.run(self.command(*words), env=environment, capture_output=True, text=True)
        if done.returncode != 0:
            raise AssertionError(f"{' '.join(words)}: {done.stdout}{done.stderr}")
        return done.stdout

    def install(self, *packages):
        self.run("apt-get", "install", "-q", "-y", "--no-install-recommends", *packages)

    def files(self):
        """All names below the root that stay as they are unless a package changes them."""
        found = set()
        for folder, names, files in os.walk(self.path):
            inside = folder.removeprefix(self.path)
            names[:] = [name for name in names if f"{inside}/{name}" not in CHANGING]
            found.update(f"{inside}/{name}" for name in names + files)
        return found


def field(package, name):
    return subprocess.run(["dpkg-deb", "--field", package, name], check=True, capture_output=True, text=True).stdout.strip()


def tests(root, package):
    """The tests in their order: each one goes on where the one before has ended."""
    # Homes and sockets of the desktop tests are where both sides see them.
    tempfile.tempdir = root.shared
    program = root.path + "/usr/bin/quillary"
    os.environ.update(QUILLARY_PROGRAM=program, QUILLARY_INSPECT="", XDG_DATA_DIRS=root.path + "/usr/share:/usr/local/share:/usr/share")
    os.environ.setdefault("QUILLARY_PICTURES", os.path.dirname(package) + "/pictures")
    sys.path.insert(0, HERE + "/../Desktop")
    import Activation
    from program import Quillary
    from screen import Display, wait_for

    before, brought = set(), set()

    class Installation(unittest.TestCase):
        def test_it_installs_on_what_it_depends_on(self):
            root.run("apt-get", "update", "-q")
            root.run("apt-get", "satisfy", "-q", "-y", "--no-install-recommends", field(package, "Depends"))
            before.update(root.files())
            shutil.copy(package, root.shared)
            root.install(f"{root.shared}/{os.path.basename(package)}")
            self.assertEqual(root.run("dpkg", "--verify", "quillary"), "")
            self.assertEqual(root.run("dpkg", "--audit"), "")
            brought.update(root.files() - before)
            self.assertIn("/usr/bin/quillary", brought)
            self.assertLessEqual(brought, set(root.run("dpkg", "--listfiles", "quillary").splitlines()))

    class Use(unittest.TestCase):
        def test_it_writes_a_note_without_a_bus_and_without_what_is_recommended(self):
            display = Display()
            self.addCleanup(display.close)
            home = tempfile.mkdtemp()
            inside = home + "/quillary"
            with open(inside, "w", encoding="utf-8") as file:
                file.write(f'#!/bin/sh\nunset DBUS_SESSION_BUS_ADDRESS\nexec {" ".join(root.command("/usr/bin/quillary"))} "$@"\n')
            os.chmod(inside, 0o755)
            os.mkdir(home + "/Note")
            started = Quillary(home, {"notesDirectory": home + "/Note"}, inside)
            self.addCleanup(started.close)
            self.addCleanup(display.picture, self.id())
            self.assertEqual(os.readlink(f"/proc/{started.process.pid}/root"), root.path)
            wait_for("the focus", started.is_active)
            started.keys("ctrl+n")
            wait_for("a note", lambda: [name for name in os.listdir(home + "/Note") if not name.startswith(".")])
            started.type("Prova nella radice pulita")
            path = next(f"{home}/Note/{name}" for name in os.listdir(home + "/Note") if not name.startswith("."))

            def text():
                with open(path, encoding="utf-8") as file:
                    return file.read()
            wait_for("the text", lambda: text() == "Prova nella radice pulita")
            started.close()
            self.assertEqual(started.process.returncode, 0)

    class ActivationInside(Activation.Activation):
        """As desktops start it, by a bus that runs in the root and reads the services there."""

        @classmethod
        def setUpClass(cls):
            root.install("at-spi2-core", "dbus-daemon", "libglib2.0-bin")
            super().setUpClass()
            address = f"unix:path={root.shared}/bus"
            cls.bus = subprocess.Popen(root.command("dbus-daemon", "--session", "--nofork", "--address=" + address))
            cls.addClassCleanup(cls.bus.wait)
            cls.addClassCleanup(cls.bus.terminate)
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = address
            wait_for("the bus", lambda: os.path.exists(root.shared + "/bus"))

        def run_program(self, *arguments):
            command = root.command("/usr/bin/quillary", *arguments)
            return subprocess.run(command, env=dict(os.environ, **self.environment()), timeout=30).returncode

        def run_command(self, command):
            root.run("env", *(f"{name}={value}" for name, value in self.environment().items()), *command)

    class Removal(unittest.TestCase):
        maxDiff = None

        def test_it_leaves_nothing_when_it_goes(self):
            root.run("apt-get", "purge", "-q", "-y", "quillary")
            self.assertNotIn("quillary", root.run("dpkg-query", "--show"))
            now = root.files()
            # Folders may have got other owners meanwhile.
            self.assertEqual(sorted(name for name in now & brought if not os.path.isdir(root.path + name)), [])
            self.assertEqual(sorted(name for name in now if "quillary" in name.lower()), [])
            self.assertEqual(sorted(before - now), [])

    loader = unittest.defaultTestLoader
    return unittest.TestSuite(loader.loadTestsFromTestCase(case) for case in (Installation, Use, ActivationInside, Removal))


def inside(place, package):
    root = Root(place)
    root.mount()
    result = unittest.TextTestRunner(verbosity=2, failfast=True).run(tests(root, package))
    return 0 if result.wasSuccessful() else 1


def main(package):
    place = tempfile.mkdtemp(prefix="quillary-root-")
    try:
        Root(place).build()
        return subprocess.run([*NAMESPACE, "dbus-run-session", "--", "/usr/bin/python3", "-B", __file__, place,
                               os.path.abspath(package)]).returncode
    finally:
        shutil.rmtree(place)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]) if len(sys.argv) == 2 else inside(*sys.argv[1:]))
