"""A Solo that plays scripts in the home of a test: what it offers, what it answers, and what it was given."""

import json
import os

from desktop import DesktopTest

FAKE_SOLO = os.environ["QUILLARY_FAKE_SOLO"]

TOOLS = [{"id": 4, "name": "Codex", "toolType": "codex"}, {"id": 5, "name": "Claude", "toolType": "claude"}]
PROJECTS = [{"id": 8, "name": "Zeta", "path": "/progetti/z"}, {"id": 9, "name": "Alfa", "path": "/progetti/a"}]
PROCESSES = [
    {"id": 31, "name": "Sessione", "kind": "agent", "status": "running", "projectId": 9, "projectName": "Alfa"},
    {"id": 32, "name": "Libera", "kind": "agent", "status": "running"},
    {"id": 33, "name": "Altra", "kind": "agent", "status": "running", "projectId": 8, "projectName": "Zeta"},
]

OPENED = ["read", 'out {"id": 1, "result": {}}', "read", "read"]
ACCEPTED = OPENED + ['out {"id": 2, "result": {}}', "read", 'out {"id": 3, "result": {}}', "read"]

PANEL = "Invia a Solo"


def answer(key, value):
    return ["out " + json.dumps({"ok": True, "data": {key: value}})]


class SoloTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.plays = self.home + "/solo"
        os.mkdir(self.plays)
        self.set_environment("FAKE_SOLO", self.plays)
        self.play("agents.list", answer("agentTools", TOOLS))
        self.play("projects.list", answer("projects", PROJECTS))
        self.play("processes.list", answer("processes", PROCESSES))
        self.play("processes.spawn", answer("id", 77))
        self.play("mcp", ACCEPTED)

    def install(self, *names):
        """Puts Solo's executables where they belong in the home."""
        for name in names:
            path = f"{self.home}/{name}"
            os.makedirs(os.path.dirname(path), exist_ok=True)
            os.symlink(FAKE_SOLO, path)

    def install_all(self):
        self.install("Applications/Solo.app/Contents/MacOS/solo-cli", "Applications/Solo.app/Contents/MacOS/mcp")

    def play(self, role, steps):
        with open(f"{self.plays}/{role}", "w", encoding="utf-8") as file:
            file.write("\n".join(steps))

    def log(self, role):
        try:
            with open(f"{self.plays}/{role}.log", encoding="utf-8") as file:
                return file.read().splitlines()
        except FileNotFoundError:
            return []

    def messages(self):
        return [json.loads(line) for line in self.log("mcp") if line != "(end)"]
