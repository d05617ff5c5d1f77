"""The life of a program on which chance works, and what is looked at in it."""

import os
import random
import signal
import subprocess
import sys
import tempfile
import threading
import time

sys.path.insert(1, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "Desktop"))

from hands import Ended, turn_key_repetition_off
from oracle import PATIENCE, Breach
from others import Others
from program import Quillary
from screen import Display, xdotool
from vitals import Vitals

FOLDERS = ("Lavoro", "Viaggi", "Casa")
FIRST_NOTES = 30

# In seconds.
MEASURE_EVERY = 50
# What a process may gain over what it had some time after its start.
RESIDENT_GAIN = 48
DESCRIPTOR_GAIN = 8
# Of one processor, at rest. Nothing but the blinking caret has a reason to run.
IDLE_SHARE = 0.01
# A second, of a program that nobody sees.
IDLE_WAKEUPS = 1


class Session(Others):
    def __init__(self, seed, report):
        display = Display()
        # A screen reader that listens to a program that is killed may not hear the next one.
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "0"
        turn_key_repetition_off()
        self.temporary = tempfile.TemporaryDirectory(prefix="soak-")
        super().__init__(random.Random(seed), display, self.temporary.name)
        self.report = report
        self.killer = None
        self.counts = {}
        self.at_rest = None
        for folder in ("", *FOLDERS):
            os.makedirs(os.path.join(self.directory, folder))
        for _ in range(FIRST_NOTES):
            self.make_foreign_note()

    def close(self):
        if self.killer:
            self.killer.cancel()
        if self.program:
            self.program.process.send_signal(signal.SIGCONT)
            self.program.close()
        self.display.picture("soak")
        self.display.close()
        self.temporary.cleanup()

    def start(self):
        self.killed_at = None
        preferences = {"notesDirectory": self.directory, "sortOrder": self.random.choice(("modified", "created", "title", "manual"))}
        self.program = Quillary(self.home, preferences)
        self.wait_for_input()
        self.at_rest = None

    def kill_after(self, seconds):
        process = self.program.process

        def kill():
            self.killed_at = time.monotonic()
            process.kill()
        self.killer = threading.Timer(seconds, kill)
        self.killer.daemon = True
        self.killer.start()

    def look_after_the_end(self, all_saved):
        self.program.process.wait()
        moment = self.killed_at or time.monotonic()
        self.killer = None
        self.adopt_stray()
        self.oracle.check_after_the_end(moment, all_saved)

    def end_by_signal(self):
        """The orderly end saves what was typed last."""
        self.killer.cancel()
        if self.is_killed:
            raise Ended
        self.program.process.send_signal(self.random.choice((signal.SIGTERM, signal.SIGINT, signal.SIGHUP)))
        try:
            code = self.program.process.wait(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            raise Breach("the program doesn't end when it is told to") from None
        if code != 0:
            raise Breach(f"the program ended with {code} when it was told to end")
        self.look_after_the_end(all_saved=True)

    # How often each step is taken.
    steps = {
        "type": 30, "type_and_undo": 4, "walk": 6, "look_around": 4, "new_note": 5, "rename": 6, "group": 3,
        "move_in_the_list": 3, "trash": 3, "close_and_open_the_window": 1, "foreign_write": 10,
        "foreign_write_while_typing": 5, "foreign_note": 5, "foreign_deletion": 3, "foreign_move": 5,
        "foreign_folders": 2, "storm": 1, "vanish": 2, "sleep": 2,
    }

    def step(self):
        name = self.random.choices(list(self.steps), self.steps.values())[0]
        self.counts[name] = self.counts.get(name, 0) + 1
        self.report.step(name)
        getattr(self, "step_" + name)()
        self.oracle.check_all()

    def live(self, seconds, deadline):
        """One life of the program: so long, until it is killed or told to end, or the time is over."""
        self.start()
        ends_in_order = self.random.random() < 0.3
        life_ends = time.monotonic() + seconds
        self.kill_after(seconds + (PATIENCE if ends_in_order else 0))
        next_measure = time.monotonic() + MEASURE_EVERY
        try:
            # One that is to be killed works on until it is.
            while time.monotonic() < deadline and not (ends_in_order and time.monotonic() > life_ends):
                self.step()
                if time.monotonic() > next_measure:
                    self.measure()
                    next_measure = time.monotonic() + MEASURE_EVERY
            self.measure()
            self.end_by_signal()
        except (Ended, subprocess.SubprocessError, OSError) as end:
            # Whatever fails at the hands of a killed program fails for that.
            if not self.is_killed:
                raise Breach(f"{type(end).__name__}: {end}; the program " + (
                    "is alive" if self.program.process.poll() is None else f"ended by itself with {self.program.process.returncode}")) from end
            self.look_after_the_end(all_saved=False)
            return "killed"
        return "ended"

    def measure(self):
        """At rest the program keeps its memory and its descriptors, and takes no time."""
        self.settle_all()
        self.face_the_window()
        # The refresh that the last change led to, and the texts that it reads in the background.
        time.sleep(1)
        self.wait_for_input()
        vitals = Vitals(self.program.process.pid)
        share, wakeups = self.rest(vitals, lambda share, wakeups: share < IDLE_SHARE)
        xdotool("windowminimize", self.program.window)
        time.sleep(1)
        self.wait_for_input()
        _, hidden_wakeups = self.rest(vitals, lambda share, wakeups: wakeups < IDLE_WAKEUPS)
        self.face_the_window()
        now = vitals.resident_mebibytes(), vitals.descriptors()
        first = self.at_rest = self.at_rest or now
        self.report.vitals(*now, first, share, wakeups, hidden_wakeups)
        if share > IDLE_SHARE:
            raise Breach(f"at rest the program takes {share:.1%} of a processor")
        if hidden_wakeups > IDLE_WAKEUPS:
            raise Breach(f"at rest and out of sight the program wakes up {hidden_wakeups:.1f} times a second")
        if now[0] - first[0] > RESIDENT_GAIN:
            raise Breach(f"the resident memory grew from {first[0]:.0f} to {now[0]:.0f} MiB")
        if now[1] - first[1] > DESCRIPTOR_GAIN:
            raise Breach(f"the descriptors grew from {first[1]} to {now[1]}")

    def rest(self, vitals, is_idle):
        """What a rest takes; once more if something of another program came in between: twice it doesn't."""
        answer = vitals.rest(3)
        if not is_idle(*answer):
            answer = vitals.rest(3)
        if self.is_killed:
            raise Ended
        return answer
