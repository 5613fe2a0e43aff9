#pragma once

#include <QByteArray>
#include <QString>

namespace kestrova {

/// A text in the encodings of the selection protocol. Copies share the bytes.
class SelectionText
{
public:
    explicit SelectionText(const QString &text);

    /// UTF-8, for UTF8_STRING and text/plain.
    const QByteArray &utf8() const { return m_utf8; }
    /// Whether the type STRING can carry the text: ISO Latin-1 with tab and line feed as its
    /// only control characters (ICCCM 2.6.2).
    bool isLatin1() const { return m_isLatin1; }
    QByteArray latin1() const { return QString::fromUtf8(m_utf8).toLatin1(); }

private:
    QByteArray m_utf8;
    bool m_isLatin1;
};

} // namespace kestrova
