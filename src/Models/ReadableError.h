#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace kestrova {

/// Base of every failure that is meant for the user: its description is the only text shown for it.
class ReadableError : public std::exception
{
public:
    explicit ReadableError(const QString &description)
        : m_description(description), m_utf8(description.toUtf8())
    {
    }

    const QString &errorDescription() const noexcept { return m_description; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_description;
    QByteArray m_utf8;
};

/// A failure of the platform (file system, process launch, network, sound server), carrying the
/// platform's own readable text. It passes through the services unchanged.
class PlatformError final : public ReadableError
{
public:
    using ReadableError::ReadableError;
};

/// The text to show for any exception: a ReadableError's description, else what() as UTF-8.
inline QString userFacingDescription(const std::exception &error)
{
    if (const auto *readable = dynamic_cast<const ReadableError *>(&error))
        return readable->errorDescription();
    return QString::fromUtf8(error.what());
}

} // namespace kestrova
