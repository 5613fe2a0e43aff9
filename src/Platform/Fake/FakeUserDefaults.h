#pragma once

#include "Platform/UserDefaults.h"

#include <QHash>
#include <QList>

namespace kestrova {

/// What tests see of and do to the stored documents.
class FakeUserDefaultsControl
{
public:
    virtual ~FakeUserDefaultsControl() = default;

    /// As another program would.
    virtual void put(const QString &key, const QByteArray &bytes) = 0;
    virtual std::optional<QByteArray> stored(const QString &key) const = 0;
    virtual QList<QByteArray> keptAside(const QString &key) const = 0;
    virtual void failReading(bool fail) = 0;
    virtual void failWriting(bool fail) = 0;
};

class FakeUserDefaults final : public UserDefaults, public FakeUserDefaultsControl
{
public:
    std::optional<VersionedData> versionedData(const QString &key) const override;
    std::optional<DocumentVersion> version(const QString &key) const override;
    DocumentVersion setData(const QString &key, const QByteArray &bytes) override;
    void setAside(const QString &key) override;

    void put(const QString &key, const QByteArray &bytes) override;
    std::optional<QByteArray> stored(const QString &key) const override;
    QList<QByteArray> keptAside(const QString &key) const override;
    void failReading(bool fail) override { m_readingFails = fail; }
    void failWriting(bool fail) override { m_writingFails = fail; }

private:
    QHash<QString, VersionedData> m_documents;
    QHash<QString, QList<QByteArray>> m_keptAside;
    int m_writes = 0;
    bool m_readingFails = false;
    bool m_writingFails = false;
};

} // namespace kestrova
