"""A virtual display with a window manager, its keys and its mouse."""

import contextlib
import os
import subprocess
import tempfile
import time

PICTURES = os.environ["QUILLARY_PICTURES"]


def wait_for(what, condition, seconds=20):
    """Asks until the answer is true and gives it; the display and the file system announce nothing to a test."""
    deadline = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {seconds} s in vain: {what}")
        time.sleep(0.02)


def xdotool(*arguments):
    """Moves and presses, one after the other."""
    subprocess.run(["xdotool", *map(str, arguments)], check=True, timeout=20)


def ask_xdotool(*arguments):
    """The words of its answer; none where it has found nothing."""
    return subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True, timeout=20).stdout.split()


def find_window(title):
    """The first window on show whose title a pattern fits; none if there is none."""
    return next(iter(ask_xdotool("search", "--onlyvisible", "--name", title)), None)


def activate(window):
    xdotool("windowactivate", "--sync", window)


@contextlib.contextmanager
def held(key):
    """Holds a key down for what happens within."""
    xdotool("keydown", key)
    try:
        yield
    finally:
        xdotool("keyup", key)


def drag(start, end, finish=("mouseup", 1)):
    """Moves with the button held in small steps, as a hand does."""
    steps = 12
    command = ["mousemove", *start, "mousedown", 1]
    for step in range(1, steps + 1):
        x = start[0] + (end[0] - start[0]) * step // steps
        y = start[1] + (end[1] - start[1]) * step // steps
        command += ["mousemove", x, y, "sleep", 0.02]
    # The last place is told twice, so that the program has answered to it before the button goes up.
    xdotool(*command, "mousemove", end[0] + 1, end[1], "sleep", 0.1, *finish)


class Display:
    """A virtual display with a window manager, for all tests of a program."""

    def __init__(self):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            # Without -noreset the first client that leaves before another has come takes the display with it.
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as pipe:
            os.environ["DISPLAY"] = ":" + pipe.readline().strip()
        # The accessibility bus has its socket there, and runs of several tests at once must not share one.
        self.runtime = tempfile.TemporaryDirectory()
        os.environ["XDG_RUNTIME_DIR"] = self.runtime.name
        subprocess.run(["dbus-update-activation-environment", "XDG_RUNTIME_DIR"], check=True)
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        os.environ.pop("WAYLAND_DISPLAY", None)
        self.manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        wait_for("the window manager", lambda: "_NET_SUPPORTING_WM_CHECK(WINDOW)" in
                 subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], capture_output=True, text=True).stdout)

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
        self.runtime.cleanup()

    @staticmethod
    def picture(name):
        os.makedirs(PICTURES, exist_ok=True)
        subprocess.run(["import", "-silent", "-window", "root", os.path.join(PICTURES, name + ".png")], check=False)
