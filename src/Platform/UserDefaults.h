#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrova {

/// Small documents under keys, kept for the user. Usable from any thread.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// The stored bytes, whole; none when nothing is stored. Throws PlatformError when something
    /// is stored but cannot be read.
    virtual std::optional<QByteArray> data(const QString &key) const = 0;
    /// Replaces the stored bytes at once and durably: whatever interrupts it, either the old or
    /// the new bytes are there, whole. Throws PlatformError, the old bytes intact.
    virtual void setData(const QString &key, const QByteArray &bytes) = 0;
    /// Keeps the present bytes under another name beside the document, where no later call
    /// changes them. Does nothing when nothing is stored. Throws PlatformError.
    virtual void setAside(const QString &key) = 0;
};

} // namespace kestrova
