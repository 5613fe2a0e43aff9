"""The settings window: each change is stored at once, and what it shows is what the program does."""

import json
import unittest

import dictation
import windows
from test_applications import clipboard
from test_failures import WITHOUT_TOOL, DictationTestCase, tool
from test_program import run
from windows import BUTTON, FIELD, RADIO_BUTTON

FIELDS = {
    # tab, name of the field: key of the stored document, text typed
    ("Whisper.cpp", "whisper-cli path"): ("whisperCLIPath", "/opt/none/whisper-cli"),
    ("Whisper.cpp", "Language code (auto, en, es, fr...)"): ("transcriptionLanguage", "de"),
    ("Model", "Download URL"): ("modelDownloadURL", "http://127.0.0.1:9/other.bin"),
    ("Model", "SHA256 checksum"): ("modelSHA256", "0123456789abcdef"),
}


class SettingsTestCase(DictationTestCase):
    def open_settings(self, program, tab=None):
        window = program.open_settings()
        if tab:
            window.find(tab, windows.TAB).click()
        return window

    def wait_until_stored(self, key, value):
        self.wait_until(lambda: dictation.stored_settings()[key] == value)


class Fields(SettingsTestCase):
    def test_every_field_is_stored_as_it_is_typed_and_shown_again_after_a_restart(self):
        with windows.Program() as program:
            window = self.open_settings(program)
            for (tab, field), (key, text) in FIELDS.items():
                window.find(tab, windows.TAB).click()
                window.find(field, FIELD).replace_text(text)
                self.wait_until_stored(key, text)
            window.find("Whisper.cpp", windows.TAB).click()
            window.find("Accurate", RADIO_BUTTON).click()
            self.wait_until_stored("decodingProfile", "accurate")
            window.find("General", windows.TAB).click()
            window.find("Dark", RADIO_BUTTON).click()
            self.wait_until_stored("theme", "dark")
        with windows.Program() as program:
            window = self.open_settings(program)
            self.assertTrue(window.find("Dark", RADIO_BUTTON).has_state("checked"))
            for (tab, field), (_, text) in FIELDS.items():
                window.find(tab, windows.TAB).click()
                self.assertEqual(window.find(field, FIELD).text, text)
            window.find("Whisper.cpp", windows.TAB).click()
            self.assertTrue(window.find("Accurate", RADIO_BUTTON).has_state("checked"))

    def test_typing_in_the_middle_of_a_text_keeps_the_cursor(self):
        with windows.Program() as program:
            field = self.open_settings(program, "Model").find("Download URL", FIELD)
            field.replace_text("http://model.bin")
            dictation.press("Home", *["Right"] * 7)
            windows.type_text("127.0.0.1/")
            self.wait_until_stored("modelDownloadURL", "http://127.0.0.1/model.bin")
            self.assertEqual(field.text, "http://127.0.0.1/model.bin")
            self.assertEqual(field.cursor, len("http://127.0.0.1/"))

    def test_the_language_buttons_set_the_field(self):
        with windows.Program() as program:
            window = self.open_settings(program, "Whisper.cpp")
            field = window.find("Language code (auto, en, es, fr...)", FIELD)
            for button, language in {"Use English": "en", "Use Auto Detect": "auto"}.items():
                window.find(button, BUTTON).click()
                self.wait_until_stored("transcriptionLanguage", language)
                self.wait_until(lambda expected=language: field.text == expected)

    def test_a_preset_sets_the_address_and_clears_the_checksum(self):
        dictation.prepare_profile(modelSHA256="0123")
        with windows.Program() as program:
            window = self.open_settings(program, "Model")
            files = {"Medium": "ggml-medium.bin", "Large-v3": "ggml-large-v3.bin", "Base": "ggml-base.bin"}
            for button, file in files.items():
                window.find(button, BUTTON).click()
                field = window.find("Download URL", FIELD)
                self.wait_until(lambda ending=file: field.text.endswith("/" + ending))
                self.assertTrue(field.text.startswith("https://"))
                self.wait_until_stored("modelDownloadURL", field.text)
                self.assertEqual(dictation.stored_settings()["modelSHA256"], "")
            self.assertEqual(window.find("SHA256 checksum", FIELD).text, "")

    def test_typing_the_path_of_a_tool_finds_it(self):
        path = tool("exit 0")
        dictation.prepare_profile(whisperCLIPath="/nowhere/whisper-cli")
        with windows.Program(prefix=WITHOUT_TOOL) as program:
            window = self.open_settings(program, "Whisper.cpp")
            window.find("Not Found")
            window.find("whisper-cli path", FIELD).replace_text(path)
            window.find("Ready", windows.LABEL)
            window.find(path, windows.LABEL)


class Appearance(SettingsTestCase):
    LIGHT, DARK = (0xF6, 0xF5, 0xF3), (0x1D, 0x1B, 0x1A)  # of a window's background

    def wait_for_background(self, window, colour):
        """Beside the upper right corner there is nothing else."""
        box = window.extents
        self.wait_until(lambda: windows.pixel(box.x + box.width - 30, box.y + 5) == colour)

    def test_another_theme_changes_all_open_windows_at_once(self):
        with windows.Program() as program:
            dashboard = program.open_dashboard()
            settings = self.open_settings(program)
            program.move("Dashboard", 0, 0)
            program.move("Settings", 400, 120)
            for theme, colour in {"Dark": self.DARK, "Light": self.LIGHT}.items():
                settings.find(theme, RADIO_BUTTON).click()
                self.wait_for_background(settings, colour)
                self.wait_for_background(dashboard, colour)
                self.wait_for_background(program.open_popover(), colour)
                program.close_popover()


class AssistiveTechnology(SettingsTestCase):
    def test_it_chooses_tabs_and_segments_and_presses_buttons(self):
        with windows.Program() as program:
            window = self.open_settings(program)
            window.find("Whisper.cpp", windows.TAB).press()
            window.find("Accurate", RADIO_BUTTON).press()
            self.wait_until_stored("decodingProfile", "accurate")
            window.find("Use English", BUTTON).press()
            self.wait_until_stored("transcriptionLanguage", "en")
            program.open_popover().find("Dashboard", BUTTON).press()
            program.window_in_front("Dashboard")


    def test_all_that_can_be_operated_has_a_name(self):
        with windows.Program() as program:
            self.check_names(program.open_popover())
            program.close_popover()
            dashboard = program.open_dashboard()
            self.check_names_of_tabs(dashboard, ("Overview", "Hotbar Apps", "Usage Stats"))
            settings = self.open_settings(program)
            self.check_names_of_tabs(settings, ("Whisper.cpp", "Model", "Permissions", "Diagnostics", "General"))
            settings.find("Record Shortcut", BUTTON).click()
            self.check_names(settings.find("Record Shortcut", windows.DIALOG))

    def check_names_of_tabs(self, window, tabs):
        for tab in tabs:
            window.find(tab, windows.TAB).click()
            self.wait_until(lambda name=tab: window.find(name, windows.TAB).has_state("selected"))
            self.check_names(window)

    def check_names(self, window):
        operable = (BUTTON, FIELD, RADIO_BUTTON, windows.TAB, windows.DIALOG)
        names = [element.name for element in window.all() if element.role in operable]
        self.assertTrue(names)
        self.assertNotIn("", names)


class Diagnostics(SettingsTestCase):
    def test_the_copied_report_is_the_one_that_is_printed(self):
        with windows.Program() as program:
            window = self.open_settings(program, "Diagnostics")
            window.find("Copy JSON", BUTTON).click()
            self.wait_until(lambda: clipboard().startswith("{"))
            self.assertEqual(json.loads(clipboard()), json.loads(run("--diagnostics").stdout))

    def test_the_printed_report_is_the_same(self):
        with windows.UncontrolledProgram() as program:
            self.open_settings(program, "Diagnostics").find("Print to Console", BUTTON).click()
            self.wait_until(lambda: program.output().endswith("}\n"))
            self.assertEqual(program.output(), run("--diagnostics").stdout)


if __name__ == "__main__":
    unittest.main()
