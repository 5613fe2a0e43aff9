"""Drives the program's own windows as a person does: looks for what a screen reader finds, clicks and types for real.

    with windows.Program() as program:
        popover = program.open_popover()
        popover.find("Open Settings", role=BUTTON).click()
        program.window("Settings").find("Diagnostics").click()

Runs inside tools/virtual-desktop with its tray, under /usr/bin/python3. Elements are read through AT-SPI at the
moment of the call, so they follow what the window shows; find() waits for what is not there yet.
"""

import os
import re
import subprocess
import tempfile
from collections import namedtuple
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

import dictation  # noqa: E402
import targets  # noqa: E402

LIMIT = 60.0  # seconds

BUTTON = Atspi.role_get_name(Atspi.Role.PUSH_BUTTON)  # newer versions of AT-SPI say "button"
DIALOG = "dialog"
FIELD = "text"
LABEL = "label"
RADIO_BUTTON = "radio button"
TAB = "page tab"

Rectangle = namedtuple("Rectangle", "x y width height")

# A window of xwininfo's tree, for example: 0x200006 "kestrova": ("kestrova" "kestrova")  24x24+0+0  +1248+772
TREE_LINE = re.compile(r'\s*(0x[0-9a-f]+) "(.*)": \(.*\)\s+(\d+)x(\d+)\+-?\d+\+-?\d+\s+\+(-?\d+)\+(-?\d+)')


class WindowError(Exception):
    """Something that was looked for did not come up."""


def wait_for(condition, what):
    """Polls until the condition is true; returns its value."""
    value = None

    def is_met():
        nonlocal value
        value = condition()
        return value

    if not targets._wait_for(is_met, LIMIT):
        raise WindowError(f"{what}: not within {LIMIT} s")
    return value


def centre(rectangle):
    return rectangle.x + rectangle.width // 2, rectangle.y + rectangle.height // 2


def click_at(x, y, button=1):
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", str(button)], check=True)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "1", "--", text], check=True)


def pixel(x, y):
    """The colour on the screen as (red, green, blue)."""
    command = ["import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "rgb:-"]
    return tuple(subprocess.run(command, check=True, capture_output=True).stdout)


def geometry(x_window):
    """Of a window without its frame, in the screen's own pixels."""
    lines = targets._output("xwininfo", "-id", str(x_window)).splitlines()
    values = dict(line.strip().split(":", 1) for line in lines if ":" in line)
    names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
    return Rectangle(*(int(values[name]) for name in names))


def resident_memory(pid):
    """In MB."""
    status = Path(f"/proc/{pid}/status").read_text()
    return int(re.search(r"VmRSS:\s+(\d+)", status)[1]) / 1024


class Element:
    """What a screen reader sees of a control, a text or a window."""

    def __init__(self, node):
        self._node = node

    @property
    def name(self):
        self._node.clear_cache()
        return self._node.get_name()

    @property
    def description(self):
        self._node.clear_cache()
        return self._node.get_description()

    @property
    def role(self):
        return self._node.get_role_name()

    @property
    def text(self):
        """What stands in a field or a text; lines end with a line feed."""
        self._node.clear_cache()
        return Atspi.Text.get_text(self._node, 0, -1).replace("\u2029", "\n")

    @property
    def cursor(self):
        self._node.clear_cache()
        return Atspi.Text.get_caret_offset(self._node)

    @property
    def extents(self):
        """On the screen, in its pixels."""
        box = Atspi.Component.get_extents(self._node, Atspi.CoordType.SCREEN)
        return Rectangle(box.x, box.y, box.width, box.height)

    def has_state(self, state):
        """state as AT-SPI names it, for example "focused"."""
        self._node.clear_cache()
        return any(entry.value_nick == state for entry in self._node.get_state_set().get_states())

    @property
    def is_shown(self):
        return self.has_state("showing")

    def children(self):
        self._node.clear_cache()
        nodes = (self._node.get_child_at_index(index) for index in range(self._node.get_child_count()))
        return [Element(node) for node in nodes if node]

    def everything(self):
        """All the elements below, in reading order, those included that are not shown."""
        for child in self.children():
            yield child
            yield from child.everything()

    def all(self, name=None, role=None):
        """The shown elements below with this name and role. None of a window that is just changing."""
        try:
            return [e for e in self.everything() if e._is_wanted(name, role) and e.is_shown]
        except GLib.Error:
            return []

    def _is_wanted(self, name, role):
        return (name is None or self.name == name) and (role is None or self.role == role)

    def has(self, name=None, role=None):
        return bool(self.all(name, role))

    def find(self, name=None, role=None):
        """Waits for the first such element."""
        return wait_for(lambda: self.all(name, role), f'{role or "element"} "{name}"')[0]

    def wait_until_gone(self, name=None, role=None):
        wait_for(lambda: not self.has(name, role), f'no {role or "element"} "{name}"')

    def texts(self):
        """The names of all that is shown, in reading order."""
        return [element.name for element in self.all() if element.name]

    def click(self):
        """Presses the first mouse button in its middle."""
        click_at(*centre(self.extents))

    def press(self):
        """Performs its action as assistive technology does, wherever it is on the screen."""
        count = Atspi.Action.get_n_actions(self._node)
        actions = [Atspi.Action.get_action_name(self._node, index) for index in range(count)]
        action = next(name for name in ("Press", "Toggle") if name in actions)
        Atspi.Action.do_action(self._node, actions.index(action))

    def replace_text(self, text):
        """Types over the whole text of a field."""
        self.click()
        wait_for(lambda: self.has_state("focused"), f'"{self.name}" focused')
        dictation.press("ctrl+a")
        if text:
            type_text(text)
        else:
            dictation.press("BackSpace")
        wait_for(lambda: self.text == text, f'the text "{text}"')


class _Windows:
    """The windows of a process."""

    POPOVER = "Kestrova"
    process = None

    @staticmethod
    def accessible_environment():
        """What makes a program's windows readable; called before it is started."""
        # Qt joins the accessibility bus once that exists; asking for the desktop starts it.
        Atspi.get_desktop(0).get_child_count()
        return {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}

    def _windows(self):
        """The accessible windows that are shown."""
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        try:
            applications = (desktop.get_child_at_index(index) for index in range(desktop.get_child_count()))
            own = [a for a in applications if a and a.get_process_id() == self.process.pid]
            return [window for a in own for window in Element(a).children() if window.is_shown]
        except GLib.Error:  # another application has just gone
            return []

    def shown_window(self, title):
        """The shown window with this title, else None."""
        return next((window for window in self._windows() if window.name == title), None)

    def window(self, title):
        """Waits for the window with this title."""
        return wait_for(lambda: self.shown_window(title), f'the window "{title}"')

    def window_in_front(self, title):
        """Waits for it to have the keyboard, too."""
        wait_for(lambda: targets.active_window() == self._x_window(title) != 0, f'the window "{title}" in front')
        return self.window(title)

    def wait_until_closed(self, title):
        wait_for(lambda: not self._x_window(title), f'no window "{title}"')

    def _x_window(self, title):
        """The X window behind the shown window with this title; 0 when there is none."""
        command = ["xdotool", "search", "--onlyvisible", "--all", "--class", "^kestrova$"]
        for window in targets._output(*command).split():
            if targets._output("xdotool", "getwindowname", window) == title:
                return int(window)
        return 0

    def native_extents(self, title):
        """Where the window is, without its frame, in the screen's own pixels."""
        return geometry(self._x_window(title))

    def move(self, title, x, y):
        subprocess.run(["xdotool", "windowmove", "--sync", str(self._x_window(title)), str(x), str(y)], check=True)

    def bring_to_front(self, title):
        subprocess.run(["xdotool", "windowactivate", str(self._x_window(title))], check=True)
        return self.window_in_front(title)

    def tray_icon(self):
        """Waits for the icon in the tray; where it is on the screen."""
        return wait_for(lambda: self._tray_icon(), "the tray icon")

    def _tray_icon(self):
        tray = targets._output("xdotool", "search", "--class", "tint2").split()
        trees = (targets._output("xwininfo", "-tree", "-id", window) for window in tray)
        for line in "\n".join(trees).splitlines():
            match = TREE_LINE.match(line)
            if match and match[2] == "kestrova":
                width, height, x, y = map(int, match.groups()[2:])
                return Rectangle(x, y, width, height)
        return None

    def click_tray_icon(self):
        click_at(*centre(self.tray_icon()))

    def open_popover(self):
        self.click_tray_icon()
        return self.window_in_front(self.POPOVER)

    def open_settings(self):
        self.open_popover().find("Open Settings", BUTTON).click()
        return self.window_in_front("Settings")

    def open_dashboard(self):
        self.open_popover().find("Dashboard", BUTTON).click()
        return self.window_in_front("Dashboard")

    def close_popover(self):
        dictation.press("Escape")
        self.wait_until_closed(self.POPOVER)


class Program(_Windows, dictation.Dictation):
    """The running program with windows that can be read. Leaving it asserts that it wrote nothing to standard error."""

    def __init__(self, environment=None, **options):
        super().__init__({**self.accessible_environment(), **(environment or {})}, **options)


class OrdinarilyStartedProgram(_Windows, dictation.Dictation):
    """The same, but nothing has told it beforehand that somebody will read its windows."""


class UncontrolledProgram(_Windows):
    """The program as a desktop starts it, without its control channel. Leaving it asserts the same."""

    def __enter__(self):
        self._output, self._errors = tempfile.TemporaryFile(), tempfile.TemporaryFile()
        environment = {**os.environ, **self.accessible_environment()}
        self.process = subprocess.Popen(
            [dictation.PROGRAM], env=environment, stdout=self._output, stderr=self._errors
        )
        return self

    def output(self):
        """What it has written to standard output."""
        return self._contents(self._output)

    @staticmethod
    def _contents(file):
        return os.pread(file.fileno(), os.fstat(file.fileno()).st_size, 0).decode(errors="replace")

    def __exit__(self, error, *_):
        self.process.terminate()
        status = self.process.wait(timeout=dictation.END_LIMIT)
        errors = self._contents(self._errors)
        self._output.close()
        self._errors.close()
        if error is None and (status != 0 or errors):
            raise dictation.DictationError(f"kestrova ended with {status} and wrote:\n{errors}")
