#include "Platform/Fake/FakeUserDefaults.h"

#include "Models/ReadableError.h"

namespace kestrova {

using namespace Qt::StringLiterals;

std::optional<QByteArray> FakeUserDefaults::data(const QString &key) const
{
    if (m_readingFails)
        throw PlatformError(u"Input/output error"_s);
    return stored(key);
}

void FakeUserDefaults::setData(const QString &key, const QByteArray &bytes)
{
    if (m_writingFails)
        throw PlatformError(u"No space left on device"_s);
    put(key, bytes);
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
    m_documents.insert(key, bytes);
}

std::optional<QByteArray> FakeUserDefaults::stored(const QString &key) const
{
    const auto found = m_documents.constFind(key);
    return found == m_documents.constEnd() ? std::nullopt : std::optional(*found);
}

QList<QByteArray> FakeUserDefaults::keptAside(const QString &key) const
{
    return m_keptAside.value(key);
}

} // namespace kestrova
