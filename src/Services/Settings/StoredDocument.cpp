#include "Services/Settings/StoredDocument.h"

namespace kestrova {

StoredDocument::StoredDocument(UserDefaults &defaults, const QString &key)
    : m_defaults(defaults), m_key(key)
{
}

std::optional<QByteArray> StoredDocument::knownBytes() const
{
    try {
        if (const auto stored = m_defaults.versionedData(m_key)) {
            if (stored->version == m_known)
                return stored->bytes;
        }
    } catch (const ReadableError &) {
        // As good as unknown.
    }
    return std::nullopt;
}

bool StoredDocument::store(const QByteArray &bytes)
{
    try {
        if (m_defaults.version(m_key) != m_known)
            m_defaults.setAside(m_key);
        m_known = m_defaults.setData(m_key, bytes);
        return true;
    } catch (const ReadableError &error) {
        qWarning("\"%s\" could not be stored: %s", qUtf8Printable(m_key), error.what());
        return false;
    }
}

bool StoredDocument::setAside()
{
    try {
        m_defaults.setAside(m_key);
        return true;
    } catch (const ReadableError &) {
        return false;
    }
}

} // namespace kestrova
