#pragma once

#include <QByteArray>
#include <QSocketNotifier>

namespace kestrova {

/// Writes lines to a pipe, a terminal or a file without ever waiting for the reader: what it has
/// not taken yet is kept, up to a limit. Main thread.
class LineWriter
{
public:
    /// In bytes. More than a day of what is printed usually; a longer line still goes whole.
    static constexpr qsizetype limit = 1024 * 1024;

    /// Takes the descriptor over.
    explicit LineWriter(int descriptor);
    /// What the reader does not take at once is lost.
    ~LineWriter();
    Q_DISABLE_COPY_MOVE(LineWriter)

    /// Whether the line is written or kept; otherwise there is no room until the reader reads on.
    bool write(const QByteArray &line);

private:
    void flush();

    const int m_descriptor;
    QSocketNotifier m_writable;
    QByteArray m_pending;
};

} // namespace kestrova
