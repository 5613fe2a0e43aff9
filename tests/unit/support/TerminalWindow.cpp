#include "support/TerminalWindow.h"

#include <stdexcept>

namespace kestrova {

using namespace Qt::StringLiterals;

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

} // namespace kestrova
