#pragma once

#include <QString>

namespace kestrova {

/// The number of maximal runs of characters that are not white space. A character is an extended
/// grapheme cluster; it is white space when its first code point is.
qint64 wordCount(const QString &text);

} // namespace kestrova
