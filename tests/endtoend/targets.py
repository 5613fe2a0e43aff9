"""Real applications as destinations of a paste: start one, wait until it has the keyboard, read its text, close it.

    with targets.start("mousepad") as target:      # returns once a key press would reach its empty text
        ...                                        # paste something
        assert target.wait_for_text("hello") == "hello"

Runs inside tools/virtual-desktop under /usr/bin/python3 (which has the accessibility bindings). Each start is a
fresh process with a profile of its own. What a target shows is read from the application, never from the
clipboard: through AT-SPI, from a file that a terminal's or Emacs's own process writes, or from a local page that
reports its text area to a server on the loopback interface.
"""

import http.server
import json
import os
import shlex
import shutil
import signal
import subprocess
import tempfile
import threading
import time
from pathlib import Path

START_LIMIT = 60.0  # seconds until an application has the keyboard on a busy machine
TEXT_LIMIT = 30.0  # seconds until a pasted text is there
CLOSE_LIMIT = 5.0  # seconds between asking an application to end and ending it
POLL_INTERVAL = 0.02


class TargetError(Exception):
    """The application did not start, or did not get the keyboard."""


def start(name):
    """Starts the application of this name (one of NAMES) and waits until it has the keyboard."""
    target = TARGETS[name](name)
    try:
        target.launch()
    except BaseException:
        target.close()
        raise
    return target


def active_window():
    """The X window that has the keyboard, as the window manager tells; 0 when there is none."""
    return int(_output("xdotool", "getactivewindow") or 0)


def _output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout.strip()


def _wait_for(condition, limit):
    """Polls until the condition holds; returns whether it came to hold."""
    deadline = time.monotonic() + limit
    while not condition():
        if time.monotonic() > deadline:
            return False
        time.sleep(POLL_INTERVAL)
    return True


class Target:
    """One running application with one empty text to paste into.

    name, desktop_id (its desktop entry), process (the Popen) and window (X id of the window that had the keyboard
    when it was ready) may be read; text() and wait_for_text() tell what is in it.
    """

    package = ""  # whose version is the application's
    desktop_id = ""
    environment = {}

    def __init__(self, name):
        self.name = name
        self.process = None
        self.window = 0
        self._folder = Path(tempfile.mkdtemp(prefix=f"target-{name}."))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    @classmethod
    def version(cls):
        return _output("dpkg-query", "-W", "-f=${Version}", cls.package)

    def launch(self):
        self.prepare()
        with open(self._folder / "log", "wb") as log:
            self.process = subprocess.Popen(
                self.command(),
                env=self._private_environment(),
                stdin=subprocess.DEVNULL,
                stdout=log,
                stderr=log,
                start_new_session=True,
            )
        if not _wait_for(self._is_ready_or_ended, START_LIMIT) or self.process.poll() is not None:
            log = (self._folder / "log").read_text(errors="replace")[-2000:]
            raise TargetError(f"{self.name} did not get the keyboard\n{log}")
        self.window = active_window()

    def _private_environment(self):
        """Nothing remembered from an earlier start, above all not the documents that it was ended with."""
        home = self._folder / "home"
        home.mkdir()
        remembered = ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME")
        environment = {name: value for name, value in os.environ.items() if name not in remembered}
        return {**environment, "HOME": str(home), "GSETTINGS_BACKEND": "memory", **self.environment}

    def _is_ready_or_ended(self):
        return self.process.poll() is not None or (self.has_focus() and self.is_ready())

    def prepare(self):
        """Makes what the application needs before it starts."""

    def command(self):
        raise NotImplementedError

    def is_ready(self):
        """Whether the place for the text takes keys, as the application itself tells."""
        raise NotImplementedError

    def text(self):
        """The whole text that the application holds now; lines end with a line feed."""
        raise NotImplementedError

    def has_focus(self):
        """Whether the active window belongs to this application."""
        window = active_window()
        return window != 0 and self._owns(window)

    def _owns(self, window):
        pid = _output("xdotool", "getwindowpid", str(window))
        try:
            return pid != "" and os.getsid(int(pid)) == self.process.pid
        except ProcessLookupError:
            return False

    def activate(self):
        """Brings the window back to the front and waits until it is there."""
        subprocess.run(["xdotool", "windowactivate", str(self.window)], check=True)
        if not _wait_for(lambda: active_window() == self.window, START_LIMIT):
            raise TargetError(f"{self.name} did not come to the front")

    def wait_for_text(self, expected, limit=TEXT_LIMIT):
        """Returns the text as soon as it is the expected one, else what is there when the limit is reached."""
        _wait_for(lambda: self.text() == expected, limit)
        return self.text()

    def close(self):
        """Ends the application, asking nothing, and removes its profile."""
        if self.process:
            self._signal_session(signal.SIGTERM)
            if not _wait_for(lambda: self.process.poll() is not None, CLOSE_LIMIT):
                self._signal_session(signal.SIGKILL)
                self.process.wait()
            self._signal_session(signal.SIGKILL)
        shutil.rmtree(self._folder, ignore_errors=True)

    def _signal_session(self, number):
        for entry in Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and os.getsid(int(entry.name)) == self.process.pid:
                    os.kill(int(entry.name), number)
            except ProcessLookupError:
                pass


class AccessibleTarget(Target):
    """Read through AT-SPI: the focused widget with a text."""

    def prepare(self):
        import gi

        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib

        self._atspi, self._failure = Atspi, GLib.Error
        self._widget = None

    def is_ready(self):
        # Answers of an application that is still starting may be errors: ask again.
        try:
            self._widget = self._find_focused()
        except self._failure:
            self._widget = None
        return self._widget is not None

    def _find_focused(self):
        desktop = self._atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application and self._is_ours(application):
                return self._focused_below(application)
        return None

    def _is_ours(self, application):
        try:
            return os.getsid(application.get_process_id()) == self.process.pid
        except (ProcessLookupError, self._failure):
            return False

    def _focused_below(self, node):
        node.clear_cache()
        states = node.get_state_set()
        if states.contains(self._atspi.StateType.FOCUSED) and self.is_place(node):
            return node
        if node.get_role() == self._atspi.Role.MENU_BAR:  # large, and never where a text goes
            return None
        for index in range(node.get_child_count()):
            child = node.get_child_at_index(index)
            found = child and self._focused_below(child)
            if found:
                return found
        return None

    def is_place(self, node):
        return "EditableText" in node.get_interfaces()

    def text(self):
        return self._content(self._widget)

    def _content(self, node):
        node.clear_cache()
        return self._atspi.Text.get_text(node, 0, -1)


class Mousepad(AccessibleTarget):
    package = "mousepad"
    desktop_id = "org.xfce.mousepad"

    def command(self):
        return ["mousepad", "--disable-server"]


class Gedit(AccessibleTarget):
    package = "gedit"
    desktop_id = "org.gnome.gedit"

    def command(self):
        return ["gedit", "--standalone"]


class Featherpad(AccessibleTarget):
    """A Qt editor."""

    package = "featherpad"
    desktop_id = "featherpad"
    environment = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}

    def command(self):
        return ["featherpad", "--standalone"]


class Writer(AccessibleTarget):
    """LibreOffice Writer: each paragraph is an accessible of its own."""

    package = "libreoffice-writer"
    desktop_id = "libreoffice-writer"
    environment = {"SAL_USE_VCLPLUGIN": "gtk3"}

    def prepare(self):
        super().prepare()
        profile = self._folder / "profile" / "user"
        profile.mkdir(parents=True)
        profile.joinpath("registrymodifications.xcu").write_text(WRITER_SETTINGS)

    def command(self):
        profile = (self._folder / "profile").as_uri()
        return ["soffice", "--writer", "--norestore", "--nologo", f"-env:UserInstallation={profile}"]

    def is_place(self, node):
        return node.get_role() == self._atspi.Role.PARAGRAPH

    def text(self):
        document = self._widget.get_parent()
        document.clear_cache()
        children = (document.get_child_at_index(i) for i in range(document.get_child_count()))
        return "\n".join(self._content(child) for child in children if child and self.is_place(child))


WRITER_SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Setup/Product"><prop oor:name="ooSetupLastVersion" oor:op="fuse"><value>99.9</value></prop></item>
</oor:items>
"""


class FileTarget(Target):
    """Read from a file that the application's own process writes; it exists once the application is ready."""

    @property
    def _file(self):
        return self._folder / "text"

    def is_ready(self):
        return self._file.exists()

    def text(self):
        return self._file.read_text(encoding="utf-8", errors="replace")


class Terminal(FileTarget):
    """What the terminal sends goes to cat, byte by byte and not echoed."""

    def shell_command(self):
        return f"stty -icanon -echo min 1 && exec cat > {shlex.quote(str(self._file))}"


class Xterm(Terminal):
    package = "xterm"
    desktop_id = "debian-xterm"

    def command(self):
        return ["xterm", "-e", "sh", "-c", self.shell_command()]


class Xfce4Terminal(Terminal):
    package = "xfce4-terminal"
    desktop_id = "xfce4-terminal"

    def command(self):
        return ["xfce4-terminal", "--disable-server", "-x", "sh", "-c", self.shell_command()]


class Emacs(FileTarget):
    package = "emacs-gtk"
    desktop_id = "emacs"

    def command(self):
        write = f'(write-region (point-min) (point-max) "{self._file}" nil (quote silent))'
        watch = f"(add-hook (quote after-change-functions) (lambda (&rest _) {write}))"
        setup = f"(progn (setq coding-system-for-write (quote utf-8-unix)) (switch-to-buffer \"text\") {watch})"
        ready = f"(add-hook (quote window-setup-hook) (lambda () {write}))"
        return ["emacs", "-Q", "--no-splash", "--eval", setup, "--eval", ready]


class PageTarget(Target):
    """A browser with a page that reports its text area."""

    def prepare(self):
        self._state = {"focused": False, "text": ""}
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        self._address = f"http://127.0.0.1:{self._server.server_address[1]}/"

    def _handler(self):
        target = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                self._answer(PAGE.encode() if self.path == "/" else b"")

            def do_POST(self):
                target._state = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
                self._answer(b"")

            def _answer(self, body):
                self.send_response(200)
                self.send_header("Content-Type", "text/html; charset=utf-8")
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        return Handler

    def is_ready(self):
        return self._state["focused"]

    def text(self):
        return self._state["text"]

    def close(self):
        super().close()
        self._server.shutdown()
        self._server.server_close()


PAGE = """<!doctype html><meta charset="utf-8"><title>Paste here</title>
<textarea id="place" rows="20" cols="80" autofocus></textarea>
<script>
let reported = "", sending = Promise.resolve();
function report() {
    const focused = document.hasFocus() && document.activeElement === place;
    const state = JSON.stringify({focused, text: place.value});
    if (state === reported) return;
    reported = state;
    sending = sending.then(() => fetch("/", {method: "POST", body: state}));
}
place.focus();
place.oninput = report;
setInterval(report, 50);
</script>
"""


class Chromium(PageTarget):
    package = "chromium"
    desktop_id = "chromium"

    def command(self):
        options = ["--no-first-run", "--no-default-browser-check", "--disable-background-networking"]
        options += ["--disable-component-update", "--disable-sync", "--password-store=basic", "--disable-gpu"]
        # The browser's sandbox refuses to run as root, which is what a container's user often is.
        options += ["--no-sandbox"] if os.geteuid() == 0 else []
        return ["chromium", *options, f"--user-data-dir={self._folder / 'profile'}", self._address]


class Firefox(PageTarget):
    package = "firefox-esr"
    desktop_id = "firefox-esr"

    def prepare(self):
        super().prepare()
        profile = self._folder / "profile"
        profile.mkdir()
        lines = (f"user_pref({json.dumps(name)}, {json.dumps(value)});\n" for name, value in FIREFOX_SETTINGS.items())
        profile.joinpath("user.js").write_text("".join(lines))

    def command(self):
        return ["firefox-esr", "--new-instance", "--profile", str(self._folder / "profile"), self._address]


FIREFOX_SETTINGS = {
    "app.normandy.enabled": False,
    "app.update.enabled": False,
    "browser.aboutwelcome.enabled": False,
    "browser.newtabpage.enabled": False,
    "browser.safebrowsing.malware.enabled": False,
    "browser.safebrowsing.phishing.enabled": False,
    "browser.search.update": False,
    "browser.shell.checkDefaultBrowser": False,
    "browser.startup.homepage_override.mstone": "ignore",
    "datareporting.policy.dataSubmissionEnabled": False,
    "extensions.update.enabled": False,
    "network.captive-portal-service.enabled": False,
    "network.connectivity-service.enabled": False,
    "services.settings.server": "http://127.0.0.1:9/",
    "termsofuse.bypassNotification": True,
    "toolkit.telemetry.enabled": False,
    "trailhead.firstrun.didSeeAboutWelcome": True,
}

TARGETS = {
    "mousepad": Mousepad,
    "gedit": Gedit,
    "featherpad": Featherpad,
    "libreoffice-writer": Writer,
    "emacs": Emacs,
    "chromium": Chromium,
    "firefox-esr": Firefox,
    "xterm": Xterm,
    "xfce4-terminal": Xfce4Terminal,
}
NAMES = tuple(TARGETS)
