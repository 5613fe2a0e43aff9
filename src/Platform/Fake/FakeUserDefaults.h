#pragma once

#include "Platform/UserDefaults.h"

#include <QHash>
#include <QList>

namespace kestrova {

/// Documents in memory, which tests see and change beside what the program does.
class FakeUserDefaults final : public UserDefaults
{
public:
    std::optional<VersionedData> versionedData(const QString &key) const override;
    std::optional<DocumentVersion> version(const QString &key) const override;
    DocumentVersion setData(const QString &key, const QByteArray &bytes) override;
    void setAside(const QString &key) override;

    /// As another program would.
    void put(const QString &key, const QByteArray &bytes);
    std::optional<QByteArray> stored(const QString &key) const;
    /// How often a document was put or stored.
    int writeCount() const { return m_writes; }
    QList<QByteArray> keptAside(const QString &key) const;
    void failReading(bool fail) { m_readingFails = fail; }
    void failWriting(bool fail) { m_writingFails = fail; }

private:
    QHash<QString, VersionedData> m_documents;
    QHash<QString, QList<QByteArray>> m_keptAside;
    int m_writes = 0;
    bool m_readingFails = false;
    bool m_writingFails = false;
};

} // namespace kestrova
