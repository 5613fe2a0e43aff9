#include "Services/Dictation/WordCount.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(WordCount, AnyWhiteSpaceSeparatesAndEmptyPiecesDoNotCount)
{
    EXPECT_EQ(wordCount(u"one two\tthree\nfour"_s), 4);
    EXPECT_EQ(wordCount(u"two  words\n"_s), 2);
    EXPECT_EQ(wordCount(u"  leading"_s), 1);
    EXPECT_EQ(wordCount(u"a\u2028b\u2029c\u00a0d\u3000e\u0085f\r\ng"_s), 7);
}

TEST(WordCount, BlankTextHasNoWords)
{
    EXPECT_EQ(wordCount(u""_s), 0);
    EXPECT_EQ(wordCount(u"  "_s), 0);
    EXPECT_EQ(wordCount(u"\r\n\t\u2003"_s), 0);
}

TEST(WordCount, PunctuationDoesNotSeparate)
{
    EXPECT_EQ(wordCount(u"mother-in-law's, really!"_s), 2);
    EXPECT_EQ(wordCount(u"- -"_s), 2);
}

TEST(WordCount, ASpaceWithACombiningMarkIsOneWhiteSpaceCharacter)
{
    EXPECT_EQ(wordCount(u"a \u0301b"_s), 2);
    EXPECT_EQ(wordCount(u" \u0301"_s), 0);
    EXPECT_EQ(wordCount(u"e\u0301e\u0301"_s), 1);
}

TEST(WordCount, CharactersOutsideTheBasicPlaneAreOrdinaryOnes)
{
    EXPECT_EQ(wordCount(u"👩‍👩‍👧 𝒳 🇩🇪🇫🇷"_s), 3);
    EXPECT_EQ(wordCount(u"zero\u200bwidth"_s), 1);
    EXPECT_EQ(wordCount(u"日本語 です"_s), 2);
}

} // namespace
} // namespace kestrova
