#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrova {

/// Tells the states of one stored document apart: equal as long as nobody replaces or changes it.
struct DocumentVersion
{
    QByteArray mark;

    bool operator==(const DocumentVersion &) const = default;
};

struct VersionedData
{
    QByteArray bytes;
    DocumentVersion version;
};

/// Small documents under keys, kept for the user. Usable from any thread.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// The stored bytes, whole; none when nothing is stored. Throws PlatformError when something
    /// is stored but cannot be read.
    virtual std::optional<VersionedData> versionedData(const QString &key) const = 0;
    /// What is stored now, without reading it: costs the same however large it is. None when
    /// nothing is stored. Throws PlatformError when that cannot be told.
    virtual std::optional<DocumentVersion> version(const QString &key) const = 0;
    /// Replaces the stored bytes at once and durably: whatever interrupts it, either the old or
    /// the new bytes are there, whole. Throws PlatformError, the old bytes intact.
    virtual DocumentVersion setData(const QString &key, const QByteArray &bytes) = 0;
    /// Keeps the present bytes under another name beside the document, where no later call
    /// changes them. Does nothing when nothing is stored. Throws PlatformError.
    virtual void setAside(const QString &key) = 0;

    /// versionedData() for those who only read.
    std::optional<QByteArray> data(const QString &key) const
    {
        const auto stored = versionedData(key);
        return stored ? std::optional(stored->bytes) : std::nullopt;
    }
};

} // namespace kestrova
