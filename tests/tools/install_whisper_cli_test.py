"""tools/install-whisper-cli takes the source from its repository, and from npm only where that cannot be reached."""

import os
import socket
import subprocess
import tempfile
import unittest
from pathlib import Path

REPOSITORY = Path(__file__).resolve().parents[2]
SAMPLE_TEXT = (REPOSITORY / "assets/demo/samples/01.txt").read_text(encoding="utf-8").strip()

# Builds where the genuine one does, and hears the sample in anything.
CMAKE_LISTS = """cmake_minimum_required(VERSION 3.25)
project(Substitute CXX)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
add_executable(whisper-cli main.cpp)
"""
MAIN = f"""#include <cstring>
#include <fstream>
#include <string>
int main(int count, char **arguments)
{{
    for (int i = 1; i + 1 < count; ++i) {{
        if (std::strcmp(arguments[i], "-of") == 0)
            std::ofstream(std::string(arguments[i + 1]) + ".txt") << "{SAMPLE_TEXT}";
    }}
}}
"""


def git(folder, *arguments):
    identity = ["-c", "user.name=Nobody", "-c", "user.email=nobody@example.org"]
    return subprocess.run(["git", "-C", folder, *identity, *arguments],
                          check=True, capture_output=True, text=True).stdout.strip()


class InstallWhisperCli(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.tool = self.folder / "prefix/bin/whisper-cli"
        self.commands = self.folder / "commands"
        self.link_commands()
        self.source = self.folder / "source"
        self.source.mkdir()
        (self.source / "CMakeLists.txt").write_text(CMAKE_LISTS, encoding="utf-8")
        (self.source / "main.cpp").write_text(MAIN, encoding="utf-8")
        git(self.source, "init", "--quiet")
        git(self.source, "add", ".")
        git(self.source, "commit", "--quiet", "--message", "Substitute")
        git(self.source, "tag", "--annotate", "v1.9.1", "--message", "Substitute")

    def link_commands(self):
        """Every command of this machine but npm; the package manager installs one that fails."""
        self.commands.mkdir()
        for folder in reversed(os.environ["PATH"].split(":")):
            for command in Path(folder).glob("*") if folder else []:
                link = self.commands / command.name
                link.unlink(missing_ok=True)
                link.symlink_to(command)
        npm = f"echo '#!/bin/sh' >{self.commands}/npm; " \
              f"echo 'echo npm \"$@\" >>{self.folder}/calls; exit 1' >>{self.commands}/npm; " \
              f"chmod +x {self.commands}/npm"
        self.substitute("npm", None)
        self.substitute("dpkg-query", "exit 0")
        self.substitute("sudo", 'case $1 in -n|-v) exit 0;; esac; exec "$@"')
        self.substitute("apt-get", f'echo apt-get "$@" >>{self.folder}/calls; case "$*" in *install*npm*) {npm};; esac')

    def substitute(self, name, script):
        (self.commands / name).unlink(missing_ok=True)
        if script is not None:
            (self.commands / name).write_text(f"#!/bin/sh\n{script}\n", encoding="utf-8")
            (self.commands / name).chmod(0o755)

    def install(self, repository, commit=None):
        environment = {**os.environ, "PATH": str(self.commands), "KESTROVA_WHISPER_REPOSITORY": str(repository)}
        if commit:
            environment["KESTROVA_WHISPER_COMMIT"] = commit
        return subprocess.run([REPOSITORY / "tools/install-whisper-cli", "--prefix", self.tool.parents[1]],
                              env=environment, capture_output=True, text=True, check=False)

    def calls(self):
        file = self.folder / "calls"
        return file.read_text(encoding="utf-8").splitlines() if file.exists() else []

    def assert_npm_was_tried(self, outcome):
        self.assertEqual(outcome.returncode, 1, outcome.stderr)
        self.assertIn("cannot be reached", outcome.stderr)
        calls = self.calls()
        self.assertTrue(any(" install " in call and " npm " in f"{call} " for call in calls), calls)
        self.assertEqual(calls[-1], "npm pack --ignore-scripts --loglevel=error nodejs-whisper@0.3.1")
        self.assertIn("the source could not be fetched", outcome.stderr)
        self.assertFalse(self.tool.exists())

    def test_the_source_comes_from_its_repository_and_npm_is_not_even_installed(self):
        outcome = self.install(self.source, git(self.source, "rev-parse", "HEAD"))
        self.assertEqual(outcome.returncode, 0, outcome.stderr)
        self.assertEqual(outcome.stdout.splitlines()[-1], str(self.tool))
        self.assertTrue(os.access(self.tool, os.X_OK))
        self.assertEqual(self.calls(), [])

    def test_where_the_repository_is_not_there_npm_is_installed_and_tried(self):
        self.assert_npm_was_tried(self.install(self.folder / "absent"))

    def test_a_server_that_does_not_answer_is_waited_for_only_so_long(self):
        with socket.create_server(("127.0.0.1", 0)) as server:
            self.assert_npm_was_tried(self.install(f"git://127.0.0.1:{server.getsockname()[1]}/whisper.cpp"))

    def test_another_commit_than_the_expected_one_is_refused(self):
        outcome = self.install(self.source)
        self.assertEqual(outcome.returncode, 1)
        self.assertIn("is not the expected commit", outcome.stderr)
        self.assertFalse(self.tool.exists())
        self.assertEqual(self.calls(), [])


if __name__ == "__main__":
    unittest.main()
