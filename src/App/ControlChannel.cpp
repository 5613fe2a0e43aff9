#include "App/ControlChannel.h"

#include "App/StandardStreams.h"

#include <unistd.h>

#include <cerrno>

namespace kestrova {

ControlChannel::ControlChannel(AppController &controller, Windows &windows)
    : m_controller(controller), m_windows(windows), m_input(takeStandardStream(STDIN_FILENO, -1)),
      m_printer(controller.appState(), takeStandardStream(STDOUT_FILENO, STDERR_FILENO)),
      m_inputNotifier(m_input, QSocketNotifier::Read)
{
    QObject::connect(&m_inputNotifier, &QSocketNotifier::activated, &m_inputNotifier,
                     [this] { readCommands(); });
    QObject::connect(&windows, &Windows::shown, &m_printer, &StatusPrinter::printShown);
    QObject::connect(&windows, &Windows::failed, &m_printer, &StatusPrinter::printFailed);
}

ControlChannel::~ControlChannel()
{
    m_inputNotifier.setEnabled(false);
    close(m_input);
}

void ControlChannel::readCommands()
{
    char bytes[4096];
    const ssize_t count = read(m_input, bytes, sizeof bytes);
    if (count < 0 && errno == EAGAIN)
        return;
    if (count <= 0) {
        m_inputNotifier.setEnabled(false);
        return;
    }
    m_unfinishedLine.append(bytes, count);
    for (qsizetype end = m_unfinishedLine.indexOf('\n'); end >= 0;
         end = m_unfinishedLine.indexOf('\n')) {
        const QByteArray line = m_unfinishedLine.first(end).trimmed();
        m_unfinishedLine.remove(0, end + 1);
        perform(line);
    }
    if (m_unfinishedLine.size() > longestLine) {
        m_printer.printMisuse(m_unfinishedLine);
        m_unfinishedLine.clear();
    }
}

bool ControlChannel::performOnWindow(const QByteArray &command)
{
    if (command.startsWith("open "))
        return m_windows.open(QString::fromUtf8(command.sliced(5).trimmed()));
    if (command.startsWith("close "))
        return m_windows.close(QString::fromUtf8(command.sliced(6).trimmed()));
    return false;
}

void ControlChannel::perform(const QByteArray &command)
{
    bool isSlot = false;
    const int slot = command.startsWith("toggle ") ? command.sliced(7).trimmed().toInt(&isSlot) : 0;
    if (command == "toggle")
        m_controller.toggleRecordingWithDefaultTarget();
    else if (isSlot)
        m_controller.toggleRecordingWithHotbarSlot(slot);
    else if (command == "cancel")
        m_controller.cancelProcessing();
    else if (command == "download")
        m_controller.prepareModel(/*forceDownload=*/true);
    else if (!performOnWindow(command))
        m_printer.printMisuse(command);
}

} // namespace kestrova
