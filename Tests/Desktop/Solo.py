"""Sending a note to Solo from the running program: the panel by keyboard and by mouse, what Solo's executables are given, the
link that the desktop opens, and what the user reads when it fails."""

import errno
import os
import signal
import subprocess
import unittest

from program import BUTTONS, has_state
from screen import wait_for
from stage import OPENED, ACCEPTED, PANEL, TOOLS, SoloTest, answer

REFUSED = OPENED + ['out {"id": 2, "error": {"message": "la sessione è chiusa"}}']
REFUSED_WITHOUT_WORDS = OPENED + ['out {"id": 2, "result": {"isError": true}}']

BUTTON = "Invia a Solo (⇧⌘↩)"


class Solo(SoloTest):
    def setUp(self):
        super().setUp()
        self.replace_opener()
        self.write("La nota.md", "ciao mondo")

    # What is on the screen

    def begin(self, appearance="light", **preferences):
        self.preferences.update(appearance=appearance, **preferences)
        return self.start_with_one_note("La nota")

    @staticmethod
    def control(program, name):
        return program.find_button(name, *BUTTONS, "text")

    def has(self, program, name, state):
        return has_state(self.control(program, name) or program.find("list", name), state)

    @staticmethod
    def press(program, name):
        program.click_button(name, *BUTTONS, "text")

    def wait_for_text(self, program, text):
        return wait_for(f"the text {text!r}", lambda: program.find("label", text))

    def tab_to(self, program, name):
        """Goes on with the keyboard until a control has it."""
        for _ in range(12):
            if self.has(program, name, "FOCUSED"):
                return
            before = self.focus(program)
            program.keys("Tab")
            wait_for("the focus to move", lambda: self.focus(program) != before)
        raise AssertionError(f"the keyboard does not reach {name}")

    @staticmethod
    def focus(program):
        """The control of the panel that has the keyboard, by role and name."""
        node = program.find_focused(program.find("dialog", PANEL))
        return node and (node.get_role_name(), node.get_name())

    def open_panel(self, program, how):
        how()
        wait_for("the panel", lambda: program.find("dialog", PANEL))
        wait_for("what Solo offers", lambda: self.has(program, "Aggiorna", "ENABLED"))

    def expect_sent(self, program, confirmation):
        wait_for("the panel to close", lambda: not program.find("dialog", PANEL))
        wait_for("the confirmation", lambda: self.control(program, BUTTON).get_description() == confirmation)

    # The tests

    def test_the_keyboard_alone_starts_a_session(self):
        self.install_all()
        program = self.begin()
        self.open_panel(program, lambda: program.keys("ctrl+shift+Return"))
        self.wait_for_text(program, "Nota intera · 10 caratteri")
        self.wait_for_text(program, "Apre una nuova sessione con la nota come primo messaggio.")
        wait_for("the preferred tool", lambda: self.has(program, "Claude", "CHECKED"))
        self.assertEqual(program.names_in("Progetto"), ["Alfa", "Zeta"])
        self.display.picture(self.id() + ".panel")

        self.tab_to(program, "Cerca progetto (scelto: Alfa)")
        program.type("/progetti/Z")
        wait_for("the found project", lambda: program.names_in("Progetto") == ["Zeta"])
        program.keys("Down")
        wait_for("the keyboard in the list", lambda: self.has(program, "Progetto", "FOCUSED"))
        program.keys("Return")
        wait_for("the chosen project", lambda: program.find("text", "Cerca progetto (scelto: Zeta)"))
        self.assertEqual(self.preference("soloProjectID"), 8)
        self.assertEqual(self.log("processes.spawn"), [])
        self.tab_to(program, "Avvia sessione")
        program.keys("space")
        self.expect_sent(program, "Nuova sessione Claude avviata in Zeta")
        self.assertEqual([line.split("\x1f") for line in self.log("processes.spawn")],
                         [["--json", "processes", "spawn", "--project-id", "8", "--kind", "agent", "--agent-tool-id", "5",
                           "--name", "La nota", "--arg", "ciao mondo"]])
        wait_for("the link", lambda: self.opened() == ["solo://proj/8/process/la-nota--77"])

    def test_the_mouse_alone_pastes_a_selection(self):
        self.install_all()
        program = self.begin("dark")
        program.keys("ctrl+Home", "ctrl+shift+Right")
        self.open_panel(program, lambda: self.press(program, BUTTON))
        self.wait_for_text(program, "Selezione · 5 caratteri")
        self.press(program, "Codex")
        wait_for("the chosen tool", lambda: self.preference("soloAgentToolID") == 4)
        self.press(program, "Sessione aperta")
        wait_for("the sessions", lambda: program.names_in("Sessioni") == [
            "Alfa", "Sessione", "Senza progetto", "Libera", "Zeta", "Altra"])
        self.assertEqual(self.preference("soloMode"), "openSession")
        self.display.picture(self.id() + ".panel")

        self.press(program, "Cerca sessione o progetto")
        program.type("ALFA")
        wait_for("the found sessions", lambda: program.names_in("Sessioni") == ["Alfa", "Sessione"])
        self.press(program, "Cancella")
        wait_for("all sessions", lambda: len(program.names_in("Sessioni")) == 6)
        self.press(program, "Premi Invio dopo l'incolla")
        wait_for("the stored choice", lambda: self.preference("soloSubmitAfterPaste") is False)
        program.click_row("Sessione", "Sessioni")
        self.expect_sent(program, "Inviata a Sessione · Alfa")
        wait_for("the link", lambda: self.opened() == ["solo://proj/9/process/sessione--31"])
        self.assertEqual([message["method"] for message in self.messages()],
                         ["initialize", "notifications/initialized", "tools/call"])
        self.assertEqual(self.messages()[2]["params"]["arguments"], {
            "process_id": 31, "project_id": 9, "submit": False, "input": "\x1b[200~ciao \x1b[201~"})

        # To a session without a project there is no link; with the return, which travels by itself.
        self.open_panel(program, lambda: self.press(program, BUTTON))
        wait_for("no confirmation", lambda: "Inviata" not in self.control(program, BUTTON).get_description())
        self.press(program, "Premi Invio dopo l'incolla")
        wait_for("the stored choice", lambda: self.preference("soloSubmitAfterPaste") is True)
        program.click_row("Libera", "Sessioni")
        self.expect_sent(program, "Inviata a Libera")
        self.assertEqual(self.messages()[-1]["params"]["arguments"], {"process_id": 32, "submit": False, "bytes": [13]})
        self.assertEqual(len(self.opened()), 1)

    def test_tells_what_failed_and_lets_try_again(self):
        self.install_all()
        self.play("agents.list", ['out {"ok": false, "error": {"message": "connessione rifiutata"}}'])
        program = self.begin("dark", soloMode="openSession", soloBringToFront=False)
        self.open_panel(program, lambda: program.keys("ctrl+shift+Return"))
        self.wait_for_text(program, "Solo non risponde. È aperto?\nconnessione rifiutata")
        self.wait_for_text(program, "Nessuna sessione agent attiva in Solo.")
        self.display.picture(self.id() + ".not-running")
        for steps, text in ((["out usage: solo"], "Risposta di Solo non riconosciuta."),
                            (["crash"], "Solo non ha risposto in tempo.")):
            self.play("agents.list", steps)
            self.press(program, "Aggiorna")
            self.wait_for_text(program, text)
        self.play("agents.list", answer("agentTools", TOOLS))
        self.press(program, "Aggiorna")
        for steps, text in ((REFUSED, "Invio non riuscito: la sessione è chiusa"),
                            (REFUSED_WITHOUT_WORDS, "Invio non riuscito: errore sconosciuto"),
                            (OPENED + ["exit 0"], "Solo non ha risposto in tempo.")):
            self.play("mcp", steps)
            program.click_row("Sessione", "Sessioni")
            self.wait_for_text(program, text)
            self.assertTrue(program.find("dialog", PANEL))
            wait_for("the next try", lambda: self.has(program, "Sessioni", "ENABLED"))
        self.display.picture(self.id() + ".refused")
        self.play("mcp", ACCEPTED)
        program.click_row("Sessione", "Sessioni")
        self.expect_sent(program, "Inviata a Sessione · Alfa")
        self.assertEqual(self.opened(), [])

    def test_a_text_that_no_command_takes_is_refused_and_can_be_pasted(self):
        self.install_all()
        text = "parola " * 20_000
        self.write("La nota.md", text)
        program = self.begin()
        self.open_panel(program, lambda: program.keys("ctrl+shift+Return"))
        self.wait_for_text(program, "Nota intera · 140000 caratteri")
        wait_for("the preferred project", lambda: self.has(program, "Avvia sessione", "ENABLED"))
        self.tab_to(program, "Avvia sessione")
        program.keys("space")
        self.wait_for_text(program, os.strerror(errno.E2BIG))
        wait_for("the keyboard, back for another try", lambda: self.has(program, "Avvia sessione", "FOCUSED"))
        self.assertTrue(program.find("dialog", PANEL))
        self.assertEqual(self.log("processes.spawn"), [])
        self.display.picture(self.id() + ".refused")

        self.press(program, "Sessione aperta")
        program.click_row("Sessione", "Sessioni")
        self.expect_sent(program, "Inviata a Sessione · Alfa")
        self.assertEqual(self.messages()[2]["params"]["arguments"]["input"], "\x1b[200~" + text + "\x1b[201~")
        self.assertEqual(self.read("La nota.md"), text)

    def test_ends_cleanly_while_a_text_is_under_way(self):
        self.install_all()
        self.play("mcp", OPENED + ["ignore-term", "hang"])
        program = self.begin(soloMode="openSession")
        self.open_panel(program, lambda: program.keys("ctrl+shift+Return"))
        program.click_row("Altra", "Sessioni")
        wait_for("the silence", lambda: "(hangs)" in self.log("mcp"))
        self.assertFalse(self.has(program, "Sessioni", "ENABLED"))
        self.display.picture(self.id() + ".sending")
        servers = subprocess.run(["pgrep", "-P", str(program.process.pid)], capture_output=True, text=True).stdout.split()
        self.assertEqual(len(servers), 1)
        program.process.send_signal(signal.SIGTERM)
        self.assertEqual(program.process.wait(timeout=20), 0)
        self.assertFalse(os.path.exists("/proc/" + servers[0]), "a server outlives the program")

    def test_offers_what_is_installed(self):
        program = self.begin()
        program.keys("alt+n")
        item = wait_for("the menu entry", lambda: program.find("menu item", "Invia a Solo…"))
        self.assertFalse(has_state(item, "ENABLED"))
        program.keys("Escape", "Escape")
        self.press(program, BUTTON)
        program.keys("ctrl+Home")
        program.type("x")
        wait_for("the text, which has kept the keyboard", lambda: self.read("La nota.md").startswith("x"))
        self.assertFalse(program.find("dialog", PANEL))
        program.close()

        # The command line alone finds sessions, but can't paste.
        self.install(".local/bin/solo")
        program = self.begin(soloMode="openSession")
        self.open_panel(program, lambda: program.keys("ctrl+shift+Return"))
        program.click_row("Altra", "Sessioni")
        self.wait_for_text(program, "Solo non è installato (manca la riga di comando «solo»).")
        program.keys("Escape")
        wait_for("the panel to close", lambda: not program.find("dialog", PANEL))


if __name__ == "__main__":
    unittest.main()
