#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

namespace kestrova {

/// Writes the property that a settings manager publishes.
class XSettingsProperty
{
public:
    explicit XSettingsProperty(QDataStream::ByteOrder order = QDataStream::LittleEndian)
    {
        m_stream.setByteOrder(order);
    }

    XSettingsProperty &integer(const QByteArray &name, qint32 value)
    {
        begin(0, name);
        m_stream << value;
        return *this;
    }

    XSettingsProperty &text(const QByteArray &name, const QByteArray &value)
    {
        begin(1, name);
        m_stream << quint32(value.size());
        writePadded(value);
        return *this;
    }

    XSettingsProperty &color(const QByteArray &name, quint16 value)
    {
        begin(2, name);
        m_stream << value << value << value << value;
        return *this;
    }

    QByteArray bytes() const
    {
        QByteArray header;
        QDataStream stream(&header, QIODevice::WriteOnly);
        stream.setByteOrder(m_stream.byteOrder());
        const bool isBigEndian = m_stream.byteOrder() == QDataStream::BigEndian;
        stream << quint8(isBigEndian) << quint8(0) << quint16(0) << serial << m_count;
        return header + m_settings;
    }

private:
    static constexpr quint32 serial = 7; // of the last change, which nobody looks at

    void begin(quint8 type, const QByteArray &name)
    {
        ++m_count;
        m_stream << type << quint8(0) << quint16(name.size());
        writePadded(name);
        m_stream << serial;
    }

    void writePadded(const QByteArray &bytes)
    {
        m_stream.device()->write(bytes + QByteArray((4 - bytes.size() % 4) % 4, '\0'));
    }

    QByteArray m_settings;
    QDataStream m_stream{&m_settings, QIODevice::WriteOnly};
    quint32 m_count = 0;
};

} // namespace kestrova
