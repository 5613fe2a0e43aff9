#pragma once

#include "Services/TestFiles.h"

#include <QtEndian>

#include <optional>
#include <vector>

namespace kestrova {

/// The samples that the header of a 16 kHz mono 16-bit PCM WAV file of one data chunk speaks of;
/// none when that is not what the bytes are, or when the header speaks of more than there is.
inline std::optional<std::vector<qint16>> wavSamples(const QByteArray &bytes)
{
    constexpr qsizetype headerSize = 44;
    if (bytes.size() < headerSize)
        return std::nullopt;
    const auto number = [&](qsizetype offset) {
        return qFromLittleEndian<quint32>(bytes.constData() + offset);
    };
    const QByteArray format = QByteArray::fromHex("1000000001000100803e0000007d000002001000");
    const quint32 size = number(40);
    if (!bytes.startsWith("RIFF") || bytes.mid(8, 8) != "WAVEfmt " || bytes.mid(16, 20) != format ||
        bytes.mid(36, 4) != "data" || size % 2 != 0 || number(4) != size + headerSize - 8 ||
        headerSize + size > bytes.size())
        return std::nullopt;
    std::vector<qint16> samples;
    for (qsizetype offset = headerSize; offset < headerSize + size; offset += 2)
        samples.push_back(qFromLittleEndian<qint16>(bytes.constData() + offset));
    return samples;
}

/// Of a file that is complete: nothing after the samples.
inline std::optional<std::vector<qint16>> completeWavSamples(const QString &path)
{
    const QByteArray bytes = readFile(path);
    const auto samples = wavSamples(bytes);
    const bool isWhole =
        samples && 44 + 2 * static_cast<qsizetype>(samples->size()) == bytes.size();
    return isWhole ? samples : std::nullopt;
}

} // namespace kestrova
