"""The popover: where it opens, how it closes, and a set-up and a dictation with nothing else."""

import hashlib
import http.server
import os
import shutil
import threading
import time
import unittest
from pathlib import Path

import dictation
import targets
import windows
from test_applications import SENTENCES, words
from test_failures import WITHOUT_TOOL, DictationTestCase
from windows import BUTTON, LABEL

GAP = 8  # between the popover and the panel
GREETING_TIME = 1.5  # seconds within which a program that has something to say says it


class Place(DictationTestCase):
    def test_it_opens_beside_the_icon_within_the_work_area(self):
        with windows.Program() as program:
            icon = program.tray_icon()
            box = program.open_popover().extents
            self.assertEqual(box.width, 360)
            self.assertEqual(box.y + box.height, panel().y - GAP)
            self.assertGreaterEqual(box.x, 0)
            self.assertLessEqual(box.x + box.width, panel().width)
            self.assertLessEqual(box.x, windows.centre(icon)[0])
            self.assertGreaterEqual(box.x + box.width, windows.centre(icon)[0])

    def test_it_closes_on_escape_on_a_second_click_and_when_the_focus_goes(self):
        with targets.start("mousepad") as editor, windows.Program() as program:
            program.open_popover()
            dictation.press("Escape")
            self.check_closed(program, editor)
            program.open_popover()
            program.click_tray_icon()
            self.check_closed(program, editor)
            program.open_popover()
            editor.activate()
            self.check_closed(program, editor)

    def check_closed(self, program, editor):
        program.wait_until_closed(program.POPOVER)
        self.wait_until(editor.has_focus)

    def test_it_opens_and_stays_at_every_click(self):
        with windows.Program() as program:
            for _ in range(30):
                program.open_popover()
                program.close_popover()

    def test_the_tab_key_reaches_every_control(self):
        with windows.Program() as program:
            popover = program.open_popover()
            popover.find("Start Recording", BUTTON)
            names = {button.name for button in popover.all(role=BUTTON)}
            reached = set()
            for _ in range(len(names) + 1):
                dictation.press("Tab")
                self.wait_until(lambda: self.focused(popover))
                reached.add(self.focused(popover)[0].name)
            self.assertEqual(reached, names)
            expected = {"Start Recording", "Dashboard", "Refresh setup state", "Open Settings", "Quit Kestrova"}
            self.assertLessEqual(expected, names)

    @staticmethod
    def focused(popover):
        return [element for element in popover.all(role=BUTTON) if element.has_state("focused")]

    def test_quit_ends_the_program(self):
        with windows.Program() as program:
            program.open_popover().find("Quit Kestrova", BUTTON).click()
            self.assertEqual(program.process.wait(timeout=dictation.END_LIMIT), 0)


class Accessibility(DictationTestCase):
    def test_whoever_looks_while_it_runs_can_read_it(self):
        with windows.OrdinarilyStartedProgram() as program:
            program.send("open popover")
            program.window(program.POPOVER).find("Start Recording", BUTTON)


def panel():
    """Where the tray's panel is."""
    return windows.geometry(targets._output("xdotool", "search", "--class", "tint2").split()[0])


class Start(DictationTestCase):
    def test_what_is_to_be_set_up_is_shown_by_itself(self):
        dictation.model_file().unlink()
        with windows.UncontrolledProgram() as program:
            program.window_in_front(program.POPOVER).find("Setup Needed")

    def test_a_program_that_is_set_up_starts_quietly(self):
        with windows.UncontrolledProgram() as program:
            program.tray_icon()
            time.sleep(GREETING_TIME)
            self.assertIsNone(program.shown_window(program.POPOVER))


class Dictating(DictationTestCase):
    def test_its_button_dictates_into_the_application_that_was_in_front(self):
        with targets.start("mousepad") as editor, windows.Program() as program:
            popover = program.open_popover()
            popover.find("Ready", LABEL)
            popover.find("Start Recording", BUTTON).click()
            program.wait_for_state("recording")
            program.wait_until_closed(program.POPOVER)
            self.wait_until(editor.has_focus)
            dictation.play(SENTENCES[0])

            popover = program.open_popover()
            popover.find("Recording...")
            popover.find("Stop & Insert", BUTTON).click()
            text = program.wait_for_transcript()
            self.assertEqual(words(text), words(dictation.sample_text(SENTENCES[0])))
            self.assertEqual(editor.wait_for_text(text), text)

            # A click now would count as the one that took the focus away.
            program.wait_until_closed(program.POPOVER)
            program.send("open popover")
            popover = program.window_in_front(program.POPOVER)
            popover.find("Last Transcript")
            popover.find(text)
            popover.find(str(len(text.split())))

    def test_cancel_keeps_it_open(self):
        with windows.Program() as program:
            program.start_recording()
            dictation.play(SENTENCES[0])
            popover = program.open_popover()
            popover.find("Stop & Insert", BUTTON).click()
            popover.find("AI Processing...")
            popover.find("Cancel", BUTTON).click()
            program.wait_for_state("idle")
            popover.find("Ready")
            self.assertTrue(program.shown_window(program.POPOVER))


class ModelServer:
    """Serves the demo model slowly, so that its progress can be watched; at first it only fails."""

    def __enter__(self):
        server = self
        self.is_failing = True
        self.may_finish = threading.Event()

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                if server.is_failing:
                    self.send_error(503)
                    return
                body = dictation.DEMO_MODEL.read_bytes()
                self.send_response(200)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                half = len(body) // 2 + 1
                self.wfile.write(body[:half])
                server.may_finish.wait(windows.LIMIT)
                self.wfile.write(body[half:])

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        self.address = f"http://127.0.0.1:{self._server.server_port}/ggml-demo.bin"
        return self

    def __exit__(self, *_):
        self.may_finish.set()
        self._server.shutdown()
        self._server.server_close()


class Setup(DictationTestCase):
    def test_from_nothing_to_the_first_dictation(self):
        digest = hashlib.sha256(dictation.DEMO_MODEL.read_bytes()).hexdigest()
        # Where the program looks for the tool by itself; hidden, it is empty.
        tool = Path("/usr/local/bin/whisper-cli")
        with ModelServer() as server:
            dictation.prepare_profile(whisperCLIPath="", modelDownloadURL=server.address, modelSHA256=digest)
            dictation.model_file().unlink()
            with targets.start("mousepad") as editor, windows.Program(prefix=WITHOUT_TOOL) as program:
                popover = program.open_popover()
                popover.find("Setup Needed")
                self.assertEqual(len(popover.all("Pending", LABEL)), 2)
                self.assertEqual(len(popover.all("Ready", LABEL)), 2)
                self.fail_to_download(popover)
                self.download(popover, server)
                self.install_tool(program, tool)
                popover.find("Refresh setup state", BUTTON).click()
                popover.find("Start Recording", BUTTON).click()
                self.dictate(program, editor)

    def fail_to_download(self, popover):
        popover.find("Download ggml-base.bin", BUTTON).click()
        popover.find(role="alert")

    def download(self, popover, server):
        server.is_failing = False
        popover.find("Download ggml-base.bin", BUTTON).click()
        popover.find("Downloading model...", BUTTON)
        self.wait_until(lambda: popover.find(role="progress bar").description.endswith("50%"))
        server.may_finish.set()
        popover.find("ggml-base.bin ready")
        popover.wait_until_gone(role="alert")

    @staticmethod
    def install_tool(program, tool):
        """Into the folder that only the program sees as it is."""
        inside = Path(f"/proc/{program.process.pid}/root") / tool.relative_to("/")
        shutil.copy2(os.environ["KESTROVA_WHISPER_CLI"], inside)

    def dictate(self, program, editor):
        program.wait_for_state("recording")
        program.wait_until_closed(program.POPOVER)
        dictation.play(SENTENCES[0])
        program.stop_recording()
        text = program.wait_for_transcript()
        self.assertEqual(words(text), words(dictation.sample_text(SENTENCES[0])))
        self.assertEqual(editor.wait_for_text(text), text)


if __name__ == "__main__":
    unittest.main()
