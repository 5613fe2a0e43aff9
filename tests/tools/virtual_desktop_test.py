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

# Takes over in two steps, and what a window asks for in between is lost, as sometimes with the genuine one.
FORGETFUL_WINDOW_MANAGER = f"""#!/bin/sh
/usr/bin/python3 - <<'PROGRAM'
import ctypes
EVENT_MASK, SUBSTRUCTURE_REDIRECT = 1 << 11, 1 << 20
xcb = ctypes.CDLL("libxcb.so.1")
xcb.xcb_connect.restype = xcb.xcb_get_setup.restype = xcb.xcb_wait_for_event.restype = ctypes.c_void_p
xcb.xcb_setup_roots_iterator.restype = type(
    "Iterator", (ctypes.Structure,), dict(_fields_=[("data", ctypes.POINTER(ctypes.c_uint32)), ("rest", ctypes.c_int64)])
)
connection = ctypes.c_void_p(xcb.xcb_connect(None, None))
root = xcb.xcb_setup_roots_iterator(ctypes.c_void_p(xcb.xcb_get_setup(connection))).data[0]
mask = ctypes.byref(ctypes.c_uint32(SUBSTRUCTURE_REDIRECT))
xcb.xcb_change_window_attributes(connection, root, EVENT_MASK, mask)
xcb.xcb_unmap_subwindows(connection, root)
xcb.xcb_flush(connection)
xcb.xcb_wait_for_event(connection)
PROGRAM
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

    def test_a_window_manager_that_forgets_a_window_is_waited_for_too(self):
        self.assertEqual(windows_at_start(FORGETFUL_WINDOW_MANAGER), "_NET_CLIENT_LIST: window id #")


if __name__ == "__main__":
    unittest.main()
