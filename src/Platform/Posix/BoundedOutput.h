#pragma once

#include <QByteArray>

namespace kestrova {

/// What is kept of a stream that may have no end: all of it up to a limit, and of a longer one its
/// beginning and its end, half of the limit each. One thread.
class BoundedOutput
{
public:
    /// In bytes.
    explicit BoundedOutput(qsizetype limit) : m_half(limit / 2) {}

    void append(const QByteArray &bytes);

    bool isWhole() const { return m_size <= 2 * m_half; }
    /// With a line between beginning and end where something is left out. No character of UTF-8
    /// text is cut.
    QByteArray bytes() const;

private:
    const qsizetype m_half;
    qsizetype m_size = 0; ///< of the whole stream
    QByteArray m_beginning;
    QByteArray m_end; ///< with some of what comes before it
};

} // namespace kestrova
