#pragma once

#include <QString>

namespace kestrova {

/// What a card shows of a text: its beginning, which is far more than anybody reads there. Laying
/// out a megabyte would take seconds and a hundred megabytes of memory.
inline QString shownPart(const QString &text)
{
    constexpr qsizetype limit = 20'000;
    return text.size() > limit ? text.first(limit) + QChar(u'…') : text;
}

} // namespace kestrova
