#pragma once

#include <QProcess>

namespace kestrova {

/// An xterm with a title and, if wanted, a WM_CLASS of its own, which lasts as long as this object.
class TerminalWindow
{
public:
    /// Throws std::runtime_error when it cannot be started; its window comes a little later.
    explicit TerminalWindow(const QString &title, const QString &className = {});
    ~TerminalWindow();
    TerminalWindow(const TerminalWindow &) = delete;
    TerminalWindow &operator=(const TerminalWindow &) = delete;

    qint32 processIdentifier() const { return static_cast<qint32>(m_process.processId()); }
    /// Returns when its process is gone.
    void kill();

private:
    QProcess m_process;
};

} // namespace kestrova
