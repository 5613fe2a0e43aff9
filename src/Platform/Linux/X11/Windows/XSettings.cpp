#include "Platform/Linux/X11/Windows/XSettings.h"

#include <QDataStream>
#include <QIODevice>

namespace kestrova {

namespace {

constexpr quint8 mostSignificantFirst = 1; // MSBFirst of the X protocol

enum Type : quint8 { integerType, stringType, colorType };

// Strings are filled up to a whole number of four bytes.
QByteArray readString(QDataStream &stream, qint64 length)
{
    if (length > stream.device()->bytesAvailable()) {
        stream.setStatus(QDataStream::ReadPastEnd);
        return {};
    }
    const QByteArray string = stream.device()->read(length);
    stream.device()->skip((4 - length % 4) % 4);
    return string;
}

QVariant readInteger(QDataStream &stream)
{
    qint32 value = 0;
    stream >> value;
    return value;
}

QVariant readText(QDataStream &stream)
{
    quint32 length = 0;
    stream >> length;
    return readString(stream, length);
}

QVariant skipColor(QDataStream &stream)
{
    stream.device()->skip(4 * sizeof(quint16));
    return {};
}

QVariant readValue(QDataStream &stream, quint8 type)
{
    switch (type) {
    case integerType:
        return readInteger(stream);
    case stringType:
        return readText(stream);
    case colorType:
        return skipColor(stream);
    default:
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
}

void readSetting(QDataStream &stream, QHash<QByteArray, QVariant> &settings)
{
    quint8 type = 0;
    quint8 unused = 0;
    quint16 nameLength = 0;
    quint32 lastChange = 0;
    stream >> type >> unused >> nameLength;
    const QByteArray name = readString(stream, nameLength);
    stream >> lastChange;
    if (const QVariant value = readValue(stream, type); value.isValid())
        settings.insert(name, value);
}

} // namespace

QHash<QByteArray, QVariant> xSettings(const QByteArray &property)
{
    QDataStream stream(property);
    quint8 byteOrder = 0;
    quint32 serial = 0;
    quint32 count = 0;
    stream >> byteOrder;
    stream.setByteOrder(byteOrder == mostSignificantFirst ? QDataStream::BigEndian
                                                          : QDataStream::LittleEndian);
    stream.device()->skip(3);
    stream >> serial >> count;

    QHash<QByteArray, QVariant> settings;
    for (; count > 0 && stream.status() == QDataStream::Ok; --count)
        readSetting(stream, settings);
    return stream.status() == QDataStream::Ok ? settings : QHash<QByteArray, QVariant>();
}

} // namespace kestrova
