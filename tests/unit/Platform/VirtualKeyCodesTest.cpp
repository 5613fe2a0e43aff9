#include "Platform/Linux/X11/Keys/VirtualKeyCodes.h"

#include "Models/Settings/HotkeyShortcut.h"

#include <QList>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

QList<QByteArray> numbered(const QByteArray &prefix, int first, int last)
{
    QList<QByteArray> names;
    for (int number = first; number <= last; ++number)
        names.append(prefix + QByteArray::number(number).rightJustified(2, '0'));
    return names;
}

QList<quint32> codesOf(const QList<QByteArray> &names)
{
    QList<quint32> codes;
    for (const QByteArray &name : names)
        codes.append(virtualKeyCode(name).value_or(9999));
    return codes;
}

TEST(VirtualKeyCodes, TheLetterRowsAreThoseOfTheKeyboard)
{
    // "1234567890-=", "QWERTYUIOP[]", "ASDFGHJKL;'\" and "ZXCVBNM,./" of a US keyboard.
    EXPECT_EQ(codesOf(numbered("AE", 1, 12)),
              (QList<quint32>{18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24}));
    EXPECT_EQ(codesOf(numbered("AD", 1, 12)),
              (QList<quint32>{12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30}));
    EXPECT_EQ(codesOf(numbered("AC", 1, 12)),
              (QList<quint32>{0, 1, 2, 3, 5, 4, 38, 40, 37, 41, 39, 42}));
    EXPECT_EQ(codesOf(numbered("AB", 1, 10)), (QList<quint32>{6, 7, 8, 9, 11, 45, 46, 43, 47, 44}));
}

TEST(VirtualKeyCodes, TheFunctionKeysAreThoseOfTheKeyboard)
{
    EXPECT_EQ(codesOf(numbered("FK", 1, 20)),
              (QList<quint32>{122, 120, 99,  118, 96,  97,  98, 100, 101, 109,
                              103, 111, 105, 107, 113, 106, 64, 79,  80,  90}));
}

TEST(VirtualKeyCodes, TheKeysAroundTheLettersHaveTheirCodes)
{
    EXPECT_EQ(codesOf({"LSGT", "RTRN", "TAB", "SPCE", "TLDE", "BKSP", "ESC", "BKSL"}),
              (QList<quint32>{10, 36, 48, 49, 50, 51, 53, 42}));
    EXPECT_EQ(codesOf({"INS", "HOME", "PGUP", "DELE", "END", "PGDN"}),
              (QList<quint32>{114, 115, 116, 117, 119, 121}));
    EXPECT_EQ(codesOf({"LEFT", "RGHT", "DOWN", "UP"}), (QList<quint32>{123, 124, 125, 126}));
}

TEST(VirtualKeyCodes, OtherPositionsHaveNone)
{
    EXPECT_EQ(virtualKeyCode(QByteArrayView()), std::nullopt);
    EXPECT_EQ(virtualKeyCode("I248"), std::nullopt);
    EXPECT_EQ(virtualKeyCode("AE0"), std::nullopt);
    EXPECT_EQ(virtualKeyCode("AE011"), std::nullopt);
}

} // namespace
} // namespace kestrova
