"""What the kernel tells of a running process."""

import os
import time


class Vitals:
    def __init__(self, pid):
        self.pid = pid
        self.directory = f"/proc/{pid}"

    def resident_mebibytes(self):
        with open(self.directory + "/statm", encoding="ascii") as file:
            return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") / 2**20

    def descriptors(self):
        return len(os.listdir(self.directory + "/fd"))

    def threads(self):
        return os.listdir(self.directory + "/task")

    def seconds_of_cpu(self):
        """The time that all threads ran, to the nanosecond; those of stat(5) are in hundredths."""
        total = 0
        for thread in self.threads():
            try:
                with open(f"{self.directory}/task/{thread}/schedstat", encoding="ascii") as file:
                    total += int(file.read().split()[0])
            except OSError:  # a thread that ended
                continue
        return total / 1e9

    def wakeups(self):
        """How often the main thread went to sleep."""
        with open(self.directory + "/status", encoding="ascii") as file:
            return next(int(line.split()[1]) for line in file if line.startswith("voluntary_ctxt_switches"))

    def is_asleep(self):
        """Whether the main thread waits for something to do, or has ended."""
        with open(self.directory + "/stat", encoding="ascii", errors="replace") as file:
            return file.read().rsplit(")", 1)[1].split()[0] in "SZ"

    def rest(self, seconds):
        """The part of a processor that the process takes while nobody asks anything of it, and its wake-ups a second."""
        cpu, wakeups, start = self.seconds_of_cpu(), self.wakeups(), time.monotonic()
        time.sleep(seconds)
        passed = time.monotonic() - start
        return (self.seconds_of_cpu() - cpu) / passed, (self.wakeups() - wakeups) / passed


def wait_until_asleep(pids, seconds=60):
    """Waits until none of the processes has anything to do, seen several times in a row."""
    processes = [Vitals(pid) for pid in pids]
    deadline = time.monotonic() + seconds
    quiet = 0
    while quiet < 6:
        quiet = quiet + 1 if all(each.is_asleep() for each in processes) else 0
        if time.monotonic() > deadline:
            return False
        time.sleep(0.008)
    return True
