#include "App/ControlChannel.h"
#include "App/KestrovaApp.h"
#include "App/SingleInstanceLock.h"
#include "App/StopSignals.h"
#include "App/TerminationSignals.h"
#include "Models/ReadableError.h"
#include "Views/Tray/Greeting.h"

#include <QApplication>
#include <QSessionManager>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

using namespace kestrova;
using namespace Qt::StringLiterals;

constexpr auto usage =
    R"(Usage: kestrova [--control]

Dictates into the application in front: press Super+Shift+Space, speak, press it again.
Super+Alt+1 to 9 dictate into the application of a hotbar slot.

  --control      takes "toggle", "toggle SLOT", "cancel" and "download" (of the model) from standard
                 input, a line each, and prints what happens, a JSON object a line
  --diagnostics  prints a report on the installation, also while another copy runs
  --version      prints the version
  --help         prints this
)";

// Not on the stack of main(): when the X server goes, Qt ends the program by exit().
std::unique_ptr<KestrovaApp> runningApp;

bool contains(int argc, char **argv, std::string_view argument)
{
    return std::any_of(argv + 1, argv + argc, [&](const char *arg) { return arg == argument; });
}

void print(const QString &text, std::FILE *file = stdout)
{
    std::fputs((text + u'\n').toUtf8().constData(), file);
}

int printDiagnostics(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    print(standaloneDiagnosticsJSON());
    return EXIT_SUCCESS;
}

int printVersion(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    print(u"Kestrova "_s + makePlatform().bundle.version.value_or(u"dev"_s));
    return EXIT_SUCCESS;
}

/// The first argument that means nothing, after Qt has taken its own.
std::optional<QString> unknownArgument()
{
    for (const QString &argument : QCoreApplication::arguments().sliced(1)) {
        if (argument != u"--control"_s)
            return argument;
    }
    return std::nullopt;
}

/// A restarted copy would have nobody at the other end of its channel, and keep whoever starts the
/// next one from getting it.
void keepFromBeingRestarted(QSessionManager &session)
{
    session.setRestartHint(QSessionManager::RestartNever);
}

int run(int argc, char **argv)
{
    const bool isControlled = contains(argc, argv, "--control");
    auto preparation = prepareDesktopSession();
    QApplication application(argc, argv);
    preparation.reset();
    if (const auto argument = unknownArgument()) {
        print(u"kestrova: %1 is not known."_s.arg(*argument), stderr);
        std::fputs(usage, stderr);
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    refuseToBeStopped();
    const TerminationSignals signalHandling([] { QCoreApplication::quit(); });
    runningApp = std::make_unique<KestrovaApp>();
    std::atexit([] { runningApp.reset(); });

    std::unique_ptr<ControlChannel> control;
    if (isControlled) {
        QObject::connect(&application, &QApplication::saveStateRequest, &keepFromBeingRestarted);
        control = std::make_unique<ControlChannel>(runningApp->controller(), runningApp->windows());
    } else {
        greet(runningApp->controller().appState(), runningApp->windows());
    }
    const int status = QApplication::exec();
    control.reset();
    runningApp.reset();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    if (contains(argc, argv, "--diagnostics"))
        return printDiagnostics(argc, argv);
    if (contains(argc, argv, "--version"))
        return printVersion(argc, argv);
    if (contains(argc, argv, "--help")) {
        std::fputs(usage, stdout);
        return EXIT_SUCCESS;
    }
    const auto directories = makeStandardDirectories();
    SingleInstanceLock lock(*directories);
    if (!lock.acquire()) {
        if (!lock.problem().isEmpty())
            print(u"kestrova: "_s + lock.problem(), stderr);
        return EXIT_SUCCESS;
    }
    try {
        return run(argc, argv);
    } catch (const ReadableError &error) {
        print(u"kestrova: "_s + error.errorDescription(), stderr);
        return EXIT_FAILURE;
    }
}
