#include "App/CommandLine.h"

#include <algorithm>
#include <array>

namespace kestrova {

const char *const usage =
    R"(Usage: kestrova [--control]

Dictates into the application in front: press Super+Shift+Space, speak, press it again.
Super+Alt+1 to 9 dictate into the application of a hotbar slot.

  --control      takes commands from standard input, a line each, and prints what happens to
                 standard output, a JSON object a line. The commands:
                   toggle        as the main shortcut
                   toggle SLOT   as the shortcut of a hotbar slot
                   cancel        abandons a dictation that is being processed
                   download      downloads the model, also when there is one
                   open NAME     shows the "dashboard", the "settings" or the "popover"
                   close NAME    closes it
  --diagnostics  prints a report on the installation, also while another copy runs
  --version      prints the version
  --help         prints this
)";

namespace {

constexpr std::array ownArguments{"--control"};
constexpr std::array qtFlags{"reverse", "widgetcount", "nograb", "dograb"};
// A value follows as the next argument or after a "=".
constexpr std::array qtOptions{"display",         "platform",    "platformpluginpath",
                               "platformtheme",   "plugin",      "qmljsdebugger",
                               "qwindowgeometry", "qwindowicon", "qwindowtitle",
                               "session",         "style",       "stylesheet"};

bool isAmong(const auto &names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// How many arguments, the first of those that are left, belong to Qt; 0 when it does not.
int qtArgumentCount(std::string_view argument)
{
    if (!argument.starts_with('-'))
        return 0;
    argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
    const auto equals = argument.find('=');
    if (!isAmong(qtOptions, argument.substr(0, equals)))
        return isAmong(qtFlags, argument) ? 1 : 0;
    return equals == std::string_view::npos ? 2 : 1;
}

} // namespace

bool contains(int argc, char **argv, std::string_view argument)
{
    return std::find(argv + 1, argv + argc, argument) != argv + argc;
}

std::optional<std::string_view> unknownArgument(int argc, char **argv)
{
    for (int index = 1; index < argc;) {
        const int count = isAmong(ownArguments, argv[index]) ? 1 : qtArgumentCount(argv[index]);
        if (count == 0)
            return argv[index];
        index += count;
    }
    return std::nullopt;
}

} // namespace kestrova
