#include "Platform/Linux/X11/Clipboard/SelectionText.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(SelectionText, Latin1WithTabsAndLineFeedsFitsIntoString)
{
    const SelectionText text(u"Grüße\tan\nalle \u00a0ÿ"_s);
    EXPECT_TRUE(text.isLatin1());
    EXPECT_EQ(text.latin1(), QByteArray("Gr\xfc\xdf"
                                        "e\tan\nalle \xa0\xff"));
}

TEST(SelectionText, OtherControlCharactersAndOtherScriptsDoNotFitIntoString)
{
    for (const QString &text :
         {u"\r\n"_s, u"\u0007"_s, u"\u007f"_s, u"\u0085"_s, u"€"_s, u"日"_s, u"😀"_s})
        EXPECT_FALSE(SelectionText(text).isLatin1()) << text.toStdString();
}

TEST(SelectionText, Utf8IsWhole)
{
    EXPECT_EQ(SelectionText(u"日本 😀\n"_s).utf8(), QByteArray("日本 😀\n"));
}

} // namespace
} // namespace kestrova
