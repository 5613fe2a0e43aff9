#pragma once

#include "Platform/UserDefaults.h"

namespace kestrova {

/// One file KEY.json per key in one folder, readable by the user alone. A file may be a link to a
/// file elsewhere, which is then what is read and replaced. Anything else than a regular file is
/// an error and stays as it is.
class FileUserDefaults final : public UserDefaults
{
public:
    /// The folder is created with the first document.
    explicit FileUserDefaults(const QString &directory) : m_directory(directory) {}

    std::optional<VersionedData> versionedData(const QString &key) const override;
    std::optional<DocumentVersion> version(const QString &key) const override;
    DocumentVersion setData(const QString &key, const QByteArray &bytes) override;
    /// As KEY.kept-1.json and so on.
    void setAside(const QString &key) override;

private:
    QString path(const QString &key) const;

    const QString m_directory;
};

} // namespace kestrova
