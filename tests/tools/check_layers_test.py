"""tools/check-layers must refuse each of these trees, for the reason given, and pass the good ones."""

import graphlib
import runpy
import subprocess
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[2] / "tools" / "check-layers"

# Headers to point at, one per layer.
HEADERS = [
    "Models/Record.h", "Concurrency/Executor.h", "Platform/Workspace.h", "Platform/Fake/Fake.h",
    "Platform/Posix/Documents.h", "Platform/Linux/Choice.h", "Platform/Linux/Applications/Launcher.h",
    "Platform/Linux/Session/Session.h", "Platform/Linux/X11/Session.h", "Platform/Linux/X11/Keys/Keys.h",
    "Platform/Linux/X11/Connection/Connection.h", "Services/Store.h",
    "ViewModels/State.h", "Views/Text.h", "Views/Primitives/Button.h", "Views/Scenes/Window.h",
    "Views/Tray/Icon.h", "App/Program.h",
]


def check(files):
    """Runs the check on a tree of the headers and these files; its exit status and its messages."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in {**dict.fromkeys(HEADERS, "#pragma once\n"), **files}.items():
            path = Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        result = subprocess.run([CHECK, folder], capture_output=True, text=True, check=False)
        return result.returncode, result.stderr.replace(folder + "/", "").splitlines()


class CheckLayers(unittest.TestCase):
    def assert_refused(self, cases):
        """Each case is a folder, the text of a file in it, and the message, with its line, that the file gets."""
        files = {}
        expected = []
        for number, (folder, text, message) in enumerate(cases):
            name = f"{folder}/Bad{number}.cpp"
            files[name] = text
            expected.append(f"{name}:{message}")
        status, messages = check(files)
        self.assertEqual(status, 1)
        self.assertEqual(sorted(messages), sorted(expected))

    def assert_accepted(self, cases):
        files = {f"{folder}/Good{number}.cpp": text for number, (folder, text) in enumerate(cases)}
        self.assertEqual(check(files), (0, []))

    def test_arrows_that_point_up_or_sideways_are_refused(self):
        arrows = [
            ("Models", "Concurrency/Executor.h"), ("Models", "Platform/Workspace.h"),
            ("Concurrency", "Models/Record.h"), ("Concurrency", "Services/Store.h"),
            ("Platform", "Concurrency/Executor.h"), ("Platform", "Services/Store.h"),
            ("Platform", "Platform/Linux/Choice.h"), ("Platform", "Platform/Fake/Fake.h"),
            ("Platform/Linux", "Concurrency/Executor.h"), ("Platform/Linux", "Platform/Fake/Fake.h"),
            ("Platform/Linux/Session", "Platform/Linux/X11/Session.h"),
            ("Platform/Linux/X11", "Platform/Linux/Choice.h"), ("Platform/Linux/X11", "Platform/Posix/Documents.h"),
            ("Platform/Linux/X11/Connection", "Platform/Linux/X11/Session.h"),
            ("Platform/Posix", "Platform/Linux/Applications/Launcher.h"),
            ("Platform/Linux/Applications", "Platform/Linux/Session/Session.h"),
            ("Platform/Linux/X11", "Services/Store.h"), ("Platform/Fake", "Platform/Linux/Choice.h"),
            ("Services", "Platform/Linux/Choice.h"), ("Services", "Platform/Linux/X11/Session.h"),
            ("Services", "Platform/Fake/Fake.h"), ("Services", "ViewModels/State.h"),
            ("ViewModels", "Views/Text.h"), ("ViewModels", "Platform/Fake/Fake.h"),
            ("Views", "App/Program.h"), ("Views", "Platform/Linux/Choice.h"),
            ("Views", "Views/Scenes/Window.h"), ("Views/Primitives", "Views/Text.h"),
            ("App", "Platform/Linux/Choice.h"), ("App", "Views/Scenes/Window.h"),
        ]
        self.assert_refused([(folder, f'#include <QString>\n\n#include "{target}"\n',
                              f"3: {folder} must not see {Path(target).parent}: {target}")
                             for folder, target in arrows])

    def test_angle_brackets_and_blanks_hide_nothing(self):
        self.assert_refused([("Models", "  #  include  <Services/Store.h>\n",
                              "1: Models must not see Services: Services/Store.h")])

    def test_arrows_that_point_down_are_accepted(self):
        arrows = [
            ("Models", "Models/Record.h"), ("Platform", "Models/Record.h"),
            ("Platform/Linux", "Platform/Linux/X11/Session.h"),
            ("Platform/Linux", "Platform/Posix/Documents.h"),
            ("Platform/Linux/X11", "Platform/Linux/X11/Keys/Keys.h"),
            ("Platform/Linux/X11", "Platform/Linux/Session/Session.h"),
            ("Platform/Linux/X11/Keys", "Platform/Linux/X11/Connection/Connection.h"),
            ("Platform/Linux/X11/Connection", "Platform/Linux/Applications/Launcher.h"),
            ("Platform/Fake", "Platform/Workspace.h"), ("Services", "Platform/Workspace.h"), ("Services", "Concurrency/Executor.h"),
            ("ViewModels", "Services/Store.h"), ("Views", "ViewModels/State.h"),
            ("Views", "Views/Primitives/Button.h"), ("Views/Popover", "Views/Text.h"),
            ("App", "Views/Tray/Icon.h"), ("App", "Platform/Workspace.h"),
        ]
        self.assert_accepted([(folder, f'#include "{target}"\n') for folder, target in arrows])

    def test_no_layer_is_above_itself(self):
        layers = runpy.run_path(str(CHECK))["LAYERS"]
        below = {layer: set(others) - {layer} for layer, others in layers.items()}
        graphlib.TopologicalSorter(below).prepare()  # throws CycleError

    def test_an_include_that_is_not_named_from_src_is_refused(self):
        includes = ["Store.h", "../Services/Store.h", "Services/Missing.h", "Services/../App/Program.h"]
        self.assert_refused([("Services", f'#include "{include}"\n',
                              f'1: "{include}" is not a file below src, named from there')
                             for include in includes])

    def test_a_folder_outside_the_order_is_refused(self):
        self.assert_refused([("Helpers", "", "1: the folder Helpers has no place in the order of layers")])

    def test_desktop_headers_are_refused_outside_their_back_end(self):
        elsewhere = ["Services", "Platform", "Platform/Posix", "Platform/Fake", "Views"]
        owners = {
            "Platform/Linux": (elsewhere, ["pulse/pulseaudio.h", "glib.h", "gio/gio.h", "gio/gdesktopappinfo.h",
                                           "glib-object.h"]),
            "Platform/Linux/X11": ([*elsewhere, "Platform/Linux", "Platform/Linux/Terminal"],
                                   ["X11/Xlib.h", "xcb/xcb.h", "xkbcommon/xkbcommon.h"]),
        }
        for owner, (others, headers) in owners.items():
            self.assert_refused([(folder, f"#include <{header}>\n", f"1: {header} belongs in {owner} only")
                                 for header in headers for folder in others])
            self.assert_accepted([("Platform/Linux/X11", f"#include <{header}>\n") for header in headers])

    def test_qt_modules_beyond_core_are_refused_below_the_view_models(self):
        without_windows = ["Models", "Concurrency", "Services", "Platform", "Platform/Posix", "Platform/Linux"]
        with_windows = ["Platform/Fake", "Platform/Linux/X11"]
        self.assert_refused([(folder, f"#include <Qt{module}/QThing>\n",
                              f"1: {folder} must not use Qt{module}: Qt{module}/QThing")
                             for folder in [*without_windows, *with_windows]
                             for module in ("Gui", "Qml", "Quick", "Widgets")
                             if folder in without_windows or module != "Gui"])
        self.assert_accepted([(folder, "#include <QtGui/QWindow>\n") for folder in with_windows])
        self.assert_accepted([("Models", "#include <QString>\n#include <QtCore/QList>\n"),
                              ("Platform/Linux", "#include <QtDBus/QDBusMessage>\n"),
                              ("Views", "#include <QtGui/QColor>\n")])

    def test_linking_qt_modules_beyond_core_is_refused_below_the_view_models(self):
        folders = ["Models", "Concurrency", "Services", "Platform", "Platform/Posix", "Platform/Linux"]
        status, messages = check({f"{folder}/CMakeLists.txt": "target_link_libraries(Bad PUBLIC Qt6::Core\n Qt6::Gui)\n"
                                  for folder in folders})
        self.assertEqual(status, 1)
        self.assertEqual(sorted(messages), sorted(f"{folder}/CMakeLists.txt:2: {folder} must not link Qt6::Gui"
                                                  for folder in folders))
        self.assertEqual(check({"Views/CMakeLists.txt": "target_link_libraries(Good PUBLIC Qt6::Quick)\n"}), (0, []))

    def test_asking_for_the_operating_system_is_refused_outside_platform(self):
        questions = [("#ifdef Q_OS_LINUX", "Q_OS_LINUX"), ("#if defined(__APPLE__)", "__APPLE__"),
                     ("#ifndef __linux__", "__linux__")]
        self.assert_refused([("Services", f"\n{line}\n#endif\n",
                              f"2: {name} asks for the operating system outside Platform")
                             for line, name in questions])
        self.assert_accepted([("Platform/Linux", f"{line}\n#endif\n") for line, _ in questions])
        self.assert_accepted([("Services", "// Not on __APPLE__.\n")])

    def test_a_folder_without_headers_is_an_error(self):
        with tempfile.TemporaryDirectory() as folder:
            result = subprocess.run([CHECK, folder], capture_output=True, check=False)
            self.assertEqual(result.returncode, 2)


if __name__ == "__main__":
    unittest.main()
