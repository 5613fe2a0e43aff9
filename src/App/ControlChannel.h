#pragma once

#include "App/StatusPrinter.h"
#include "ViewModels/AppController.h"
#include "Views/Tray/Windows.h"

#include <QSocketNotifier>

namespace kestrova {

/// Lets a script or a panel drive the running program: takes commands from standard input, a line
/// each, and prints what happens to standard output as StatusPrinter tells.
///
///     toggle      as the main shortcut
///     toggle N    as the shortcut of slot N
///     cancel      abandons a dictation that is being processed
///     download    downloads the model, also when there is one
///     open NAME   shows the "dashboard", the "settings" or the "popover"
///     close NAME  closes it
///
/// A line that is no command is answered by {"event":"misuse"}. The end of the input means nothing.
/// The streams are the channel's alone: whatever else reads standard input finds it empty, children
/// included, and whatever else prints to standard output prints to standard error. Main thread.
class ControlChannel
{
public:
    /// Both outlive the channel.
    ControlChannel(AppController &controller, Windows &windows);
    ~ControlChannel();
    Q_DISABLE_COPY_MOVE(ControlChannel)

private:
    /// In bytes, far beyond any command.
    static constexpr qsizetype longestLine = 4096;

    void readCommands();
    void perform(const QByteArray &command);
    bool performOnWindow(const QByteArray &command);

    AppController &m_controller;
    Windows &m_windows;
    const int m_input;
    StatusPrinter m_printer;
    QSocketNotifier m_inputNotifier;
    QByteArray m_unfinishedLine;
};

} // namespace kestrova
