#pragma once

#include <QString>

namespace kestrova {

/// What a card shows of a text: its beginning, which is far more than anybody reads there, without
/// the empty lines that a tool's output ends with. Laying out a megabyte would take seconds and a
/// hundred megabytes of memory.
inline QString shownPart(const QString &text)
{
    constexpr qsizetype limit = 20'000;
    if (text.size() > limit)
        return text.first(limit) + QChar(u'…');
    QStringView shown = text;
    while (!shown.isEmpty() && shown.back().isSpace())
        shown.chop(1);
    return shown.toString();
}

} // namespace kestrova
