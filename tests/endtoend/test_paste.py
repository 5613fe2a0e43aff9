"""Several lines, pasted by Kestrova's own clipboard and key events, arrive unchanged in real applications."""

import subprocess
import unittest

import dictation
import targets

PASTE_TEXT = dictation.REPOSITORY / "build" / dictation.BUILD / "bin" / "paste-text"
TEXT = "First line 😀\n\tsecond 日本語\n\nlast"


class Paste(unittest.TestCase):
    def paste_into(self, name):
        with targets.start(name) as target:
            command = [PASTE_TEXT, TEXT]
            with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as own:
                self.assertEqual(own.stdout.readline(), "sent\n")
                self.assertEqual(target.wait_for_text(TEXT), TEXT)

    def test_into_an_editor(self):
        self.paste_into("mousepad")

    def test_into_a_terminal(self):
        self.paste_into("xterm")


if __name__ == "__main__":
    unittest.main()
