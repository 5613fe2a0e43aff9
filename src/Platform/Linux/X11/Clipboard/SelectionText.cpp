#include "Platform/Linux/X11/Clipboard/SelectionText.h"

#include <algorithm>

namespace kestrova {

namespace {

bool isInString(QChar character)
{
    const char16_t code = character.unicode();
    return code == u'\t' || code == u'\n' || (code >= 0x20 && code <= 0x7e) ||
           (code >= 0xa0 && code <= 0xff);
}

} // namespace

SelectionText::SelectionText(const QString &text)
    : m_utf8(text.toUtf8()), m_isLatin1(std::all_of(text.begin(), text.end(), isInString))
{
}

} // namespace kestrova
