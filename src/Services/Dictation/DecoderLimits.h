#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QString>

#include <mutex>
#include <optional>

namespace kestrova {

/// Remembers, per executable, the most decoders that it said it can run. A replaced executable is
/// asked anew. Usable from any thread.
class DecoderLimits
{
public:
    /// The limit that a tool names on standard error when it refused this many decoders; none when
    /// it failed for another reason. whisper.cpp: "too many decoders requested (10), max = 8".
    static std::optional<int> limitNamedIn(const QByteArray &standardError, int requested);

    std::optional<int> limit(const QString &executable) const;
    void remember(const QString &executable, int limit);

private:
    struct Entry
    {
        QDateTime modified;
        qint64 size;
        int limit;
    };

    mutable std::mutex m_mutex;
    QHash<QString, Entry> m_entries;
};

} // namespace kestrova
