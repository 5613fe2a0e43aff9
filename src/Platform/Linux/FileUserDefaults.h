#pragma once

#include "Platform/UserDefaults.h"

namespace kestrova {

/// One file KEY.json per key in one folder, readable by the user alone.
class FileUserDefaults final : public UserDefaults
{
public:
    /// The folder is created with the first document.
    explicit FileUserDefaults(const QString &directory) : m_directory(directory) {}

    /// $XDG_CONFIG_HOME/kestrova, else ~/.config/kestrova.
    static QString standardDirectory();

    std::optional<QByteArray> data(const QString &key) const override;
    void setData(const QString &key, const QByteArray &bytes) override;
    void setAside(const QString &key) override;

private:
    QString path(const QString &key) const;

    const QString m_directory;
};

} // namespace kestrova
