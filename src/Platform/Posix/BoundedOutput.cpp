#include "Platform/Posix/BoundedOutput.h"

namespace kestrova {

namespace {

bool continuesCharacter(char byte)
{
    return (byte & 0xC0) == 0x80;
}

/// Without its last character, which may be a part of one.
QByteArray withoutCutEnd(QByteArray text)
{
    while (!text.isEmpty() && continuesCharacter(text.back()))
        text.chop(1);
    if (!text.isEmpty() && (text.back() & 0x80))
        text.chop(1);
    return text;
}

QByteArray withoutCutBeginning(const QByteArray &text)
{
    qsizetype start = 0;
    while (start < text.size() && continuesCharacter(text[start]))
        ++start;
    return text.sliced(start);
}

} // namespace

void BoundedOutput::append(const QByteArray &bytes)
{
    m_size += bytes.size();
    const qsizetype room = qMin(m_half - m_beginning.size(), bytes.size());
    m_beginning += bytes.first(room);
    m_end += bytes.sliced(room);
    if (m_end.size() > 2 * m_half)
        m_end = m_end.last(m_half);
}

QByteArray BoundedOutput::bytes() const
{
    if (isWhole())
        return m_beginning + m_end;
    const QByteArray beginning = withoutCutEnd(m_beginning);
    const QByteArray end = withoutCutBeginning(m_end.last(m_half));
    const qsizetype omitted = m_size - beginning.size() - end.size();
    return beginning + "\n… " + QByteArray::number(omitted) + " bytes left out …\n" + end;
}

} // namespace kestrova
