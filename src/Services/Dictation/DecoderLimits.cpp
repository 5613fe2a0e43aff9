#include "Services/Dictation/DecoderLimits.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace kestrova {

using namespace Qt::StringLiterals;

std::optional<int> DecoderLimits::limitNamedIn(const QByteArray &standardError, int requested)
{
    const QRegularExpression refusal(
        u"too many decoders requested \\(%1\\), max = (\\d+)"_s.arg(requested));
    const QRegularExpressionMatch match = refusal.match(QString::fromUtf8(standardError));
    const int limit = match.captured(1).toInt();
    return limit >= 1 && limit < requested ? std::optional(limit) : std::nullopt;
}

std::optional<int> DecoderLimits::limit(const QString &executable) const
{
    const QFileInfo file(executable);
    const std::lock_guard lock(m_mutex);
    const auto entry = m_entries.constFind(executable);
    if (entry == m_entries.constEnd() || entry->modified != file.lastModified() ||
        entry->size != file.size())
        return std::nullopt;
    return entry->limit;
}

void DecoderLimits::remember(const QString &executable, int limit)
{
    const QFileInfo file(executable);
    const std::lock_guard lock(m_mutex);
    m_entries.insert(executable, {file.lastModified(), file.size(), limit});
}

} // namespace kestrova
