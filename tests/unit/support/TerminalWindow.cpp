#include "support/TerminalWindow.h"

#include <QCoreApplication>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace kestrova {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TerminalWindow::TerminalWindow(const QString &title, const QString &className)
{
    QStringList arguments{u"-title"_s, title};
    if (!className.isEmpty())
        arguments << u"-class"_s << className << u"-name"_s << className;
    m_process.start(u"xterm"_s, arguments + QStringList{u"-e"_s, u"cat"_s});
    if (!m_process.waitForStarted())
        throw std::runtime_error("xterm did not start");
}

TerminalWindow::~TerminalWindow()
{
    kill();
}

void TerminalWindow::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool waitUntil(const std::function<bool()> &condition)
{
    const auto limit = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

} // namespace kestrova
