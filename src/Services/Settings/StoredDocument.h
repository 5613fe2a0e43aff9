#pragma once

#include "Models/ReadableError.h"
#include "Platform/UserDefaults.h"

namespace kestrova {

/// One document, and which version of it the program has loaded or stored itself. It replaces no
/// other: what somebody else put there since then, or what could not be loaded, is set aside first.
/// One thread at a time, but for read().
class StoredDocument
{
public:
    /// The user defaults outlive this.
    StoredDocument(UserDefaults &defaults, const QString &key);

    /// What is stored, decoded; none when there is nothing, when it cannot be read, or when decode
    /// throws a ReadableError. The bytes stay as they are. Any thread.
    template <typename Decode>
    auto read(Decode decode) const -> std::optional<decltype(decode(QByteArray()))>
    {
        std::optional<DocumentVersion> version;
        return decoded(decode, version);
    }

    /// The same, and from now on this is the version that may be replaced.
    template <typename Decode>
    auto load(Decode decode) -> std::optional<decltype(decode(QByteArray()))>
    {
        return decoded(decode, m_known);
    }

    /// What is stored, if store() would replace it without setting it aside; none also when there
    /// is nothing.
    std::optional<QByteArray> knownBytes() const;
    /// Returns whether the bytes are stored; otherwise what was there still is.
    bool store(const QByteArray &bytes);
    /// Keeps what is stored beside the document; returns whether that is so.
    bool setAside();

private:
    template <typename Decode>
    auto decoded(Decode decode, std::optional<DocumentVersion> &version) const
        -> std::optional<decltype(decode(QByteArray()))>
    {
        version = std::nullopt;
        try {
            if (auto stored = m_defaults.versionedData(m_key)) {
                auto document = decode(stored->bytes);
                version = stored->version;
                return document;
            }
        } catch (const ReadableError &) {
            // A damaged document falls back silently; its bytes stay.
        }
        return std::nullopt;
    }

    UserDefaults &m_defaults;
    const QString m_key;
    std::optional<DocumentVersion> m_known; // none: no document
};

} // namespace kestrova
