"""Random work for as long as one likes: a user at the keyboard, other programs in the same directory, ends of the process at
random moments. At the first text that is lost, and where memory, descriptors or the use of the processor grow, it
says so with its seed and ends."""

import argparse
import random
import sys
import time
import traceback

from session import Session


class Report:
    """A line a minute."""

    def __init__(self):
        self.start = time.monotonic()
        self.next_line = self.start + 60
        self.recent = []
        self.steps = 0
        self.ends = {"killed": 0, "ended": 0}
        self.last_vitals = "not measured yet"
        self.session = None

    def minutes(self):
        return (time.monotonic() - self.start) / 60

    def step(self, name):
        self.steps += 1
        self.recent = [*self.recent[-9:], name]
        if time.monotonic() > self.next_line:
            self.line()
            self.next_line += 60

    def vitals(self, resident, descriptors, first, share, wakeups, hidden_wakeups):
        self.last_vitals = (f"{resident:.0f} MiB ({resident - first[0]:+.0f}), {descriptors} descriptors "
                            f"({descriptors - first[1]:+d}), at rest {share:.2%} of a processor and {wakeups:.1f} wake-ups a second, "
                            f"{hidden_wakeups:.1f} out of sight")

    def line(self):
        session = self.session
        print(f"soak: {self.minutes():.1f} min: {self.steps} steps, {self.ends['killed']} times killed, {self.ends['ended']} times "
              f"ended, {len(session.oracle.notes)} notes, {session.typed} texts typed, slowest save {session.slowest_save:.1f} s; "
              f"{self.last_vitals}", flush=True)


def length_of_life(chance):
    """In seconds. Most lives are short, so that ends come at all moments; in the long ones memory has time to grow."""
    return chance.uniform(*chance.choices(((1, 15), (15, 60), (120, 420)), (60, 25, 15))[0])


def run(seed, minutes):
    report = Report()
    session = report.session = Session(seed, report)
    deadline = report.start + minutes * 60
    try:
        while time.monotonic() < deadline:
            report.ends[session.live(length_of_life(session.random), deadline)] += 1
        report.line()
        print("soak: " + ", ".join(f"{count} {name.replace('_', ' ')}" for name, count in sorted(session.counts.items())))
        return 0
    except AssertionError as breach:
        print(f"soak: after {report.minutes():.1f} min, seed {seed}: {breach}", file=sys.stderr)
    except Exception:  # a mistake of this program
        traceback.print_exc()
    finally:
        session.close()
    print(f"soak: the last steps were {', '.join(report.recent)}", file=sys.stderr)
    return 1


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("minutes", type=float, nargs="?", default=60)
    parser.add_argument("seed", type=int, nargs="?", default=random.randrange(10**6))
    arguments = parser.parse_args()
    print(f"soak: {arguments.minutes:g} minutes, seed {arguments.seed}", flush=True)
    return run(arguments.seed, arguments.minutes)


if __name__ == "__main__":
    sys.exit(main())
