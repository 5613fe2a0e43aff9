#include "Models/Settings/HotkeyShortcut.h"
#include "Models/Json/JsonObjectReader.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(HotkeyShortcut, TheDefaultIsCommandShiftSpace)
{
    EXPECT_EQ(HotkeyShortcut::defaultMain(), (HotkeyShortcut{49, 768}));
    EXPECT_EQ(HotkeyShortcut::defaultMain().displayText(), u"⌘⇧Space"_s);
}

TEST(HotkeyShortcut, ModifierSignsStandInAFixedOrder)
{
    EXPECT_EQ((HotkeyShortcut{49, 4096 + 2048 + 512 + 256}).displayText(), u"⌘⇧⌥⌃Space"_s);
    EXPECT_EQ((HotkeyShortcut{18, 2304}).displayText(), u"⌘⌥1"_s);
    EXPECT_EQ((HotkeyShortcut{0, 0}).displayText(), u"A"_s);
}

TEST(HotkeyShortcut, OtherModifierBitsAreIgnoredByDisplayAndKept)
{
    const HotkeyShortcut shortcut{49, 256 + 1024};
    EXPECT_EQ(shortcut.displayText(), u"⌘Space"_s);
    EXPECT_EQ(HotkeyShortcut::fromJson(shortcut.toJson()), shortcut);
}

TEST(HotkeyShortcut, KeysAreNamedAsOnTheKeyboard)
{
    const std::pair<quint32, QString> names[] = {
        {0, u"A"_s},      {1, u"S"_s},          {2, u"D"_s},      {3, u"F"_s},
        {4, u"H"_s},      {5, u"G"_s},          {6, u"Z"_s},      {7, u"X"_s},
        {8, u"C"_s},      {9, u"V"_s},          {11, u"B"_s},     {12, u"Q"_s},
        {13, u"W"_s},     {14, u"E"_s},         {15, u"R"_s},     {16, u"Y"_s},
        {17, u"T"_s},     {18, u"1"_s},         {19, u"2"_s},     {20, u"3"_s},
        {21, u"4"_s},     {22, u"6"_s},         {23, u"5"_s},     {25, u"9"_s},
        {26, u"7"_s},     {28, u"8"_s},         {29, u"0"_s},     {31, u"O"_s},
        {32, u"U"_s},     {34, u"I"_s},         {35, u"P"_s},     {36, u"Return"_s},
        {37, u"L"_s},     {38, u"J"_s},         {40, u"K"_s},     {45, u"N"_s},
        {46, u"M"_s},     {48, u"Tab"_s},       {49, u"Space"_s}, {51, u"Delete"_s},
        {53, u"Esc"_s},   {117, u"FnDelete"_s}, {123, u"Left"_s}, {124, u"Right"_s},
        {125, u"Down"_s}, {126, u"Up"_s},
    };
    for (const auto &[code, name] : names)
        EXPECT_EQ((HotkeyShortcut{code, 0}).displayText(), name) << code;
}

TEST(HotkeyShortcut, KeysThatDependOnTheLayoutShowTheirNumber)
{
    for (const quint32 code : {10U, 24U, 27U, 30U, 33U, 39U, 41U, 42U, 43U, 44U, 47U, 50U, 4000U})
        EXPECT_EQ((HotkeyShortcut{code, 0}).displayText(), u"Key %1"_s.arg(code));
}

TEST(HotkeyShortcut, SlotsHaveCommandOptionAndTheirDigitByDefault)
{
    const quint32 codes[] = {18, 19, 20, 21, 23, 22, 26, 28, 25};
    for (int slot = 1; slot <= 9; ++slot) {
        const auto shortcut = HotkeyShortcut::defaultHotbarNumber(slot);
        EXPECT_EQ(shortcut, (HotkeyShortcut{codes[slot - 1], 2304}));
        EXPECT_EQ(shortcut->displayText(), u"⌘⌥%1"_s.arg(slot));
    }
    for (const int outside : {0, 10, -1})
        EXPECT_FALSE(HotkeyShortcut::defaultHotbarNumber(outside));
}

TEST(HotkeyShortcut, DecodingTakesWholeNumbersOf32BitsOnly)
{
    const auto decode = [](const char *json) {
        return HotkeyShortcut::fromJson(parseJsonObject(json));
    };
    EXPECT_EQ(decode(R"({"modifiers":768.0,"keyCode":49,"other":[]})"), (HotkeyShortcut{49, 768}));
    EXPECT_EQ(decode(R"({"keyCode":4294967295,"modifiers":0})").keyCode, 4294967295U);
    for (const char *bad : {
             R"({"keyCode":49})",
             R"({"modifiers":768})",
             R"({"keyCode":null,"modifiers":768})",
             R"({"keyCode":"49","modifiers":768})",
             R"({"keyCode":49.5,"modifiers":768})",
             R"({"keyCode":-1,"modifiers":768})",
             R"({"keyCode":4294967296,"modifiers":768})",
             R"({"keyCode":1e300,"modifiers":768})",
             R"({"keyCode":true,"modifiers":768})",
         })
        EXPECT_THROW(decode(bad), JsonDecodingError) << bad;
}

} // namespace
} // namespace kestrova
