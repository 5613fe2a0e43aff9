#include "App/Dictate/DictateSession.h"
#include "Concurrency/QtMainExecutor.h"

#include <QCoreApplication>

#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

namespace {

constexpr auto usage =
    R"(Usage: kestrova-dictate

Dictates on command, for scripts and tests. It reads commands from standard input, a line each:

  toggle             start recording, for the application in front; again: stop, transcribe, paste
  toggle IDENTIFIER  the same, for the application with this desktop-file id
  cancel             abandon a dictation that is being processed
  quit               end (as the end of the input does)

and prints what happens to standard output, a JSON object a line. The destination that counts is
that of the toggle that starts. Settings, model and whisper-cli are those of the desktop program.
)";

// On a thread of its own, because no event loop can watch a standard input that is a file.
void readCommands(kestrova::Executor &main, kestrova::DictateSession &session)
{
    for (std::string line; std::getline(std::cin, line) && line != "quit";) {
        const QString command = QString::fromStdString(line).trimmed();
        main.post([&session, command] { session.perform(command); });
    }
    main.post([] { QCoreApplication::quit(); });
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc > 1) {
        const bool isHelp = std::string_view(argv[1]) == "--help";
        std::fputs(usage, isHelp ? stdout : stderr);
        return isHelp ? 0 : 2;
    }
    kestrova::QtMainExecutor main;
    kestrova::DictateSession session(main);
    std::thread reader([&] { readCommands(main, session); });
    const int status = QCoreApplication::exec();
    reader.join();
    return status;
}
