#include "App/CommandLine.h"
#include "App/ControlChannel.h"
#include "App/KestrovaApp.h"
#include "App/SingleInstanceLock.h"
#include "App/StandardStreams.h"
#include "App/StopSignals.h"
#include "App/TerminationSignals.h"
#include "Models/ReadableError.h"
#include "Platform/ProcessMemory.h"
#include "Views/Tray/PopoverAtStart.h"

#include <QApplication>
#include <QSessionManager>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace kestrova;
using namespace Qt::StringLiterals;

// Not on the stack of main(): when the X server goes, Qt ends the program by exit().
std::unique_ptr<KestrovaApp> runningApp;

void endAbruptly()
{
    if (!runningApp)
        return;
    TerminationSignals::limitEnd();
    std::fputs("kestrova: The desktop has ended the connection, and Kestrova ends too.\n", stderr);
    runningApp->endAbruptly();
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
    print(u"Kestrova "_s + makePlatform(findDesktopSession()).bundle.version.value_or(u"dev"_s));
    return EXIT_SUCCESS;
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
    auto session = findDesktopSession();
    auto preparation = prepareDesktopApplication(*session);
    QApplication application(argc, argv);
    preparation.reset();
    QApplication::setQuitOnLastWindowClosed(false);
    ignoreTerminalStops();
    const TerminationSignals signalHandling([] { QCoreApplication::quit(); });
    runningApp = std::make_unique<KestrovaApp>(std::move(session));
    std::atexit(&endAbruptly);

    std::unique_ptr<ControlChannel> control;
    if (isControlled) {
        QObject::connect(&application, &QApplication::saveStateRequest, &keepFromBeingRestarted);
        control = std::make_unique<ControlChannel>(runningApp->controller(), runningApp->windows());
    } else {
        openPopoverAtStart(runningApp->controller().appState(), runningApp->windows());
    }
    const int status = QApplication::exec();
    TerminationSignals::limitEnd();
    control.reset();
    runningApp.reset();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    keepLittleFreedMemory();
    openMissingStandardStreams();
    if (contains(argc, argv, "--diagnostics"))
        return printDiagnostics(argc, argv);
    if (contains(argc, argv, "--version"))
        return printVersion(argc, argv);
    if (contains(argc, argv, "--help")) {
        std::fputs(usage, stdout);
        return EXIT_SUCCESS;
    }
    if (const auto argument = unknownArgument(argc, argv)) {
        std::fprintf(stderr, "kestrova: %s is not known.\n%s", argument->data(), usage);
        return 2;
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
