#pragma once

#include "Models/ReadableError.h"
#include "Platform/UserDefaults.h"

namespace kestrova {

/// The document stored under the key, decoded; none when there is none, when it cannot be read, or
/// when decode throws a ReadableError.
template <typename Decode>
auto loadDocument(const UserDefaults &defaults, const QString &key, Decode decode)
    -> std::optional<decltype(decode(QByteArray()))>
{
    try {
        if (const auto bytes = defaults.data(key))
            return decode(*bytes);
    } catch (const ReadableError &) {
        // Damaged documents fall back silently; their bytes stay until the next write.
    }
    return std::nullopt;
}

/// Stores the bytes under the key, whatever is there now. Returns whether they were stored;
/// otherwise the old document is still there.
inline bool storeDocument(UserDefaults &defaults, const QString &key, const QByteArray &bytes)
{
    try {
        defaults.setData(key, bytes);
        return true;
    } catch (const ReadableError &) {
        return false;
    }
}

/// Stores the bytes under the key, keeping a present document that does not decode beside it.
/// Returns whether they were stored; otherwise the old document is still there.
template <typename Decode>
bool replaceDocument(UserDefaults &defaults, const QString &key, const QByteArray &bytes,
                     Decode decode)
{
    try {
        if (!loadDocument(defaults, key, decode))
            defaults.setAside(key);
    } catch (const ReadableError &) {
        return false;
    }
    return storeDocument(defaults, key, bytes);
}

} // namespace kestrova
