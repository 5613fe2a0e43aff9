"""tools/virtual-desktop must not run its command before windows are managed, and must leave it a clean desktop."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

DESKTOP = Path(__file__).resolve().parents[2] / "tools" / "virtual-desktop"

# Announces itself like the genuine one, which takes over a second later.
SLOW_WINDOW_MANAGER = f"""#!/bin/sh
xprop -root -f _NET_SUPPORTING_WM_CHECK 32x -set _NET_SUPPORTING_WM_CHECK 1
sleep 1
exec {shutil.which("openbox")} "$@"
"""


def windows_at_start(window_manager):
    """What the window manager of a desktop lists when the command runs, as xprop tells it."""
    with tempfile.TemporaryDirectory() as folder:
        program = Path(folder, "openbox")
        program.write_text(window_manager, encoding="utf-8")
        program.chmod(0o755)
        environment = {**os.environ, "PATH": f"{folder}:{os.environ['PATH']}"}
        command = [DESKTOP, "--no-tray", "--", "xprop", "-root", "-notype", "_NET_CLIENT_LIST"]
        return subprocess.run(command, env=environment, capture_output=True, text=True, check=True).stdout.strip()


class VirtualDesktop(unittest.TestCase):
    def test_the_command_runs_when_windows_are_managed_and_finds_none(self):
        self.assertEqual(windows_at_start(SLOW_WINDOW_MANAGER), "_NET_CLIENT_LIST: window id #")


if __name__ == "__main__":
    unittest.main()
