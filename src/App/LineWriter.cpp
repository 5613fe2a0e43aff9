#include "App/LineWriter.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

namespace kestrova {

namespace {

/// Whether so much can be written that a pipe takes at once.
bool isWritable(int descriptor)
{
    pollfd room{descriptor, POLLOUT, 0};
    return poll(&room, 1, /*timeout=*/0) > 0;
}

} // namespace

LineWriter::LineWriter(int descriptor)
    : m_descriptor(descriptor), m_writable(descriptor, QSocketNotifier::Write)
{
    m_writable.setEnabled(false);
    QObject::connect(&m_writable, &QSocketNotifier::activated, &m_writable, [this] { flush(); });
}

LineWriter::~LineWriter()
{
    m_writable.setEnabled(false);
    close(m_descriptor);
}

bool LineWriter::write(const QByteArray &line)
{
    if (!m_pending.isEmpty() && m_pending.size() + line.size() > limit)
        return false;
    m_pending += line;
    flush();
    return true;
}

void LineWriter::flush()
{
    qsizetype written = 0;
    while (written < m_pending.size() && isWritable(m_descriptor)) {
        const auto size = std::size_t(qMin<qsizetype>(m_pending.size() - written, PIPE_BUF));
        const ssize_t count = ::write(m_descriptor, m_pending.constData() + written, size);
        if (count < 0 && (errno == EAGAIN || errno == EINTR))
            break;
        // Nobody reads any more.
        written = count < 0 ? m_pending.size() : written + count;
    }
    m_pending.remove(0, written);
    m_writable.setEnabled(!m_pending.isEmpty());
}

} // namespace kestrova
