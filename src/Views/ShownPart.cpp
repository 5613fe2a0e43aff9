#include "Views/ShownPart.h"

namespace kestrova {

namespace {

constexpr qsizetype limit = 20'000;

} // namespace

QString shownPart(const QString &text)
{
    QStringView shown = text;
    while (!shown.isEmpty() && shown.back().isSpace())
        shown.chop(1);
    if (shown.size() <= limit)
        return shown.toString();
    shown.truncate(limit);
    if (shown.back().isHighSurrogate())
        shown.chop(1);
    return shown.toString() + QChar(u'…');
}

QString shownError(const AppState &state)
{
    return shownPart(state.lastError.get().value_or(QString()));
}

} // namespace kestrova
