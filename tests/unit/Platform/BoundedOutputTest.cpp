#include "Platform/Posix/BoundedOutput.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(BoundedOutput, UpToItsLimitAllIsKept)
{
    BoundedOutput output(8);
    EXPECT_EQ(output.bytes(), "");
    for (const char *part : {"ab", "cde", "", "fgh"})
        output.append(part);
    EXPECT_TRUE(output.isWhole());
    EXPECT_EQ(output.bytes(), "abcdefgh");
}

TEST(BoundedOutput, BeyondItTheBeginningAndTheEndAreKept)
{
    BoundedOutput output(8);
    for (char letter = 'a'; letter <= 'z'; ++letter)
        output.append(QByteArray(1, letter));
    EXPECT_FALSE(output.isWhole());
    EXPECT_EQ(output.bytes(), "abcd\n… 18 bytes left out …\nwxyz");

    BoundedOutput atOnce(8);
    atOnce.append("abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(atOnce.bytes(), output.bytes());
}

TEST(BoundedOutput, NoCharacterIsCut)
{
    for (qsizetype limit = 4; limit < 16; limit += 2) {
        BoundedOutput output(limit);
        output.append(QByteArray("äß€😀").repeated(100));
        const QByteArray kept = output.bytes();
        EXPECT_EQ(QString::fromUtf8(kept).toUtf8(), kept) << limit;
        EXPECT_FALSE(QString::fromUtf8(kept).contains(QChar::ReplacementCharacter)) << limit;
    }
}

TEST(BoundedOutput, AnEndlessStreamTakesNoMoreMemory)
{
    BoundedOutput output(1024);
    const QByteArray block(64 * 1024, 'x');
    for (int i = 0; i < 1'000; ++i)
        output.append(block);
    EXPECT_LT(output.bytes().size(), 1024 + 64);
}

} // namespace
} // namespace kestrova
