#include "Platform/Linux/Terminal/TerminalScript.h"

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

constexpr auto beginning = R"(rm -f -- "$0"
# Job control takes the terminal back from the command. An interactive shell that turns into its
# last command does not give it back, and without it the shell that stays would end at once.
set -m
[ -x "$SHELL" ] || SHELL=/bin/sh
# Homebrew's own folders: a session that has not read its profile anew does not know them.
PATH=$PATH:/home/linuxbrew/.linuxbrew/bin:$HOME/.linuxbrew/bin
export SHELL PATH
)"_L1;

// 127 is the shells' status for a command that was not found.
constexpr auto adviceOnHomebrew = R"([ $? -ne 127 ] || cat <<'END'

Homebrew is not installed. Get it from https://brew.sh and run the command again.
Or install whisper.cpp in another way: with the package manager of your system, or built from
https://github.com/ggml-org/whisper.cpp. Then set the path of its whisper-cli in Kestrova's Settings.

END
)"_L1;

// One word of a shell, whatever it contains.
QString quoted(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', "'\\''"_L1) + u'\'';
}

} // namespace

QByteArray terminalScript(const QString &command)
{
    QString script = beginning + "command="_L1 + quoted(command) + u'\n';
    script += R"(printf '$ %s\n' "$command")"_L1 + u'\n';
    // Interactive, because some set up their PATH only then.
    script += R"("$SHELL" -i -c "$command")"_L1 + u'\n';
    if (command.startsWith("brew "_L1))
        script += adviceOnHomebrew;
    script += R"(exec "$SHELL" -i)"_L1 + u'\n';
    return script.toUtf8();
}

} // namespace kestrova
