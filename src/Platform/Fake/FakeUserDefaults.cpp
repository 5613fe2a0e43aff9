#include "Platform/Fake/FakeUserDefaults.h"

#include "Models/ReadableError.h"

namespace kestrova {

using namespace Qt::StringLiterals;

std::optional<VersionedData> FakeUserDefaults::versionedData(const QString &key) const
{
    if (m_readingFails)
        throw PlatformError(u"Input/output error"_s);
    const auto found = m_documents.constFind(key);
    return found == m_documents.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<DocumentVersion> FakeUserDefaults::version(const QString &key) const
{
    const auto found = m_documents.constFind(key);
    return found == m_documents.constEnd() ? std::nullopt : std::optional(found->version);
}

DocumentVersion FakeUserDefaults::setData(const QString &key, const QByteArray &bytes)
{
    if (m_writingFails)
        throw PlatformError(u"No space left on device"_s);
    put(key, bytes);
    return m_documents[key].version;
}

void FakeUserDefaults::setAside(const QString &key)
{
    if (m_writingFails)
        throw PlatformError(u"No space left on device"_s);
    if (const auto bytes = stored(key))
        m_keptAside[key].append(*bytes);
}

void FakeUserDefaults::put(const QString &key, const QByteArray &bytes)
{
    m_documents.insert(key, {bytes, {QByteArray::number(++m_writes)}});
}

std::optional<QByteArray> FakeUserDefaults::stored(const QString &key) const
{
    const auto found = m_documents.constFind(key);
    return found == m_documents.constEnd() ? std::nullopt : std::optional(found->bytes);
}

QList<QByteArray> FakeUserDefaults::keptAside(const QString &key) const
{
    return m_keptAside.value(key);
}

} // namespace kestrova
