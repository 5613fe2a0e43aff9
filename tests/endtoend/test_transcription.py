"""The genuine whisper-cli, its profiles, and a model that is downloaded inside a dictation."""

import hashlib
import http.server
import threading
import unittest

import dictation
import targets
from test_applications import SENTENCES, words


class ModelServer:
    """Serves the demo model on the loopback interface."""

    def __enter__(self):
        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                body = dictation.DEMO_MODEL.read_bytes()
                self.send_response(200)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return f"http://127.0.0.1:{self._server.server_port}/ggml-demo.bin"

    def __exit__(self, *_):
        self._server.shutdown()
        self._server.server_close()


class Transcription(unittest.TestCase):
    def check(self, session, editor, sentence, before=""):
        text = session.speak_and_insert(sentence)
        self.assertEqual(words(text), words(dictation.sample_text(sentence)))
        self.assertEqual(editor.wait_for_text(before + text), before + text)
        return before + text

    def test_the_accurate_profile_transcribes_and_settings_count_from_the_next_dictation(self):
        dictation.prepare_profile()
        with targets.start("mousepad") as editor, dictation.Dictation() as session:
            text = self.check(session, editor, SENTENCES[0])
            dictation.prepare_profile(decodingProfile="accurate")
            text = self.check(session, editor, SENTENCES[0], text)
            self.check(session, editor, SENTENCES[1], text)

    def test_a_damaged_model_is_downloaded_again_inside_the_dictation(self):
        digest = hashlib.sha256(dictation.DEMO_MODEL.read_bytes()).hexdigest()
        with ModelServer() as address:
            dictation.prepare_profile(modelDownloadURL=address, modelSHA256=f" {digest.upper()}\n")
            dictation.model_file().write_bytes(b"damaged")
            with targets.start("mousepad") as editor, dictation.Dictation() as session:
                self.check(session, editor, SENTENCES[0])
        self.assertEqual(dictation.model_file().read_bytes(), dictation.DEMO_MODEL.read_bytes())

    def test_a_missing_model_is_downloaded_on_command_and_used(self):
        with ModelServer() as address:
            dictation.prepare_profile(modelDownloadURL=address)
            dictation.model_file().unlink()
            with targets.start("mousepad") as editor, dictation.Dictation() as session:
                dictation.press(dictation.MAIN_SHORTCUT)
                self.assertIn("Model is not ready", session.wait_for_error())
                session.send("download")
                self.assertIs(session.wait_for(event="model")["ready"], True)
                size = dictation.DEMO_MODEL.stat().st_size
                progress = [event for event in session.events if event["event"] == "download"][-1]
                self.assertEqual((progress["received"], progress["total"]), (size, size))
                self.check(session, editor, SENTENCES[0])

    def test_a_download_with_the_wrong_digest_is_refused(self):
        digest = hashlib.sha256(dictation.DEMO_MODEL.read_bytes()).hexdigest()
        with ModelServer() as address:
            dictation.prepare_profile(modelDownloadURL=address, modelSHA256="AB")
            dictation.model_file().write_bytes(b"old")
            with dictation.Dictation() as session:
                session.start_recording()
                session.stop_recording()
                message = session.wait_for_error()
        self.assertEqual(message, f"Model checksum mismatch. Expected AB, got {digest}.")
        self.assertEqual(dictation.model_file().read_bytes(), b"old")


if __name__ == "__main__":
    unittest.main()
