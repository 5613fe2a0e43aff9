#include "Models/Settings/AppSettings.h"
#include "Models/Json/JsonObjectReader.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

constexpr auto requiredKeys = R"("shortcut":{"keyCode":49,"modifiers":768},
    "whisperCLIPath":"/w","modelDownloadURL":"https://example.org/m.bin","modelSHA256":"")";

QByteArray documentWith(const QByteArray &optionalKeys)
{
    const QByteArray separator = optionalKeys.isEmpty() ? "" : ",";
    return "{" + QByteArray(requiredKeys) + separator + optionalKeys + "}";
}

HotbarSlotAssignment slot(qint64 number, const QString &identifier)
{
    return {number, identifier, {}, {}};
}

TEST(HotbarSlots, NormalisingNothingYieldsNineEmptySlots)
{
    const auto normalized = AppSettings::normalizedHotbarAssignments({});
    EXPECT_EQ(normalized, AppSettings::defaultHotbarAssignments());
    ASSERT_EQ(normalized.size(), 9);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(normalized[i], (HotbarSlotAssignment{i + 1, {}, {}, {}}));
}

TEST(HotbarSlots, TheLastEntryOfANumberWinsAsAWhole)
{
    HotbarSlotAssignment first = slot(3, u"app.a"_s);
    first.appName = u"A"_s;
    const auto normalized = AppSettings::normalizedHotbarAssignments({first, slot(3, u"app.b"_s)});
    ASSERT_EQ(normalized.size(), 9);
    EXPECT_EQ(normalized[2], slot(3, u"app.b"_s));
}

TEST(HotbarSlots, NumbersOutsideOneToNineAreDroppedAndStringsKept)
{
    const auto normalized = AppSettings::normalizedHotbarAssignments(
        {slot(10, u"x"_s), slot(9, u" padded "_s), slot(0, u"y"_s), slot(-3, u"z"_s)});
    auto expected = AppSettings::defaultHotbarAssignments();
    expected[8] = slot(9, u" padded "_s);
    EXPECT_EQ(normalized, expected);
}

TEST(HotbarSlots, SettersIgnoreNumbersOutsideOneToNine)
{
    AppSettings settings = AppSettings::defaults();
    settings.setHotbarAssignment(10, u"a"_s, u"A"_s);
    settings.setHotbarAssignment(0, u"a"_s, u"A"_s);
    settings.setHotbarShortcut(0, HotkeyShortcut{1, 256});
    settings.setHotbarShortcut(10, HotkeyShortcut{1, 256});
    EXPECT_EQ(settings, AppSettings::defaults());
}

TEST(HotbarSlots, AnEmptyIdentifierWithANameStoresTheNameAlone)
{
    AppSettings settings = AppSettings::defaults();
    settings.setHotbarAssignment(2, u""_s, u"Editor"_s);
    EXPECT_EQ(settings.assignment(2), (HotbarSlotAssignment{2, {}, u"Editor"_s, {}}));
    EXPECT_EQ(settings.assignment(2).displayName(), u"Editor"_s);
    settings.setHotbarAssignment(2, u"  "_s, u""_s);
    EXPECT_EQ(settings.assignment(2), slot(2, u"  "_s));
}

TEST(HotbarSlots, ShortcutAndApplicationOutliveEachOthersChange)
{
    const HotkeyShortcut own{1, 256};
    AppSettings settings = AppSettings::defaults();
    settings.setHotbarShortcut(4, own);
    settings.setHotbarAssignment(4, u"a"_s, u"A"_s);
    EXPECT_EQ(settings.assignment(4), (HotbarSlotAssignment{4, u"a"_s, u"A"_s, own}));

    settings.setHotbarShortcut(4, std::nullopt);
    EXPECT_EQ(settings.assignment(4), (HotbarSlotAssignment{4, u"a"_s, u"A"_s, {}}));

    settings.setHotbarShortcut(4, own);
    settings.setHotbarAssignment(4, std::nullopt, std::nullopt);
    EXPECT_EQ(settings.assignment(4), (HotbarSlotAssignment{4, {}, {}, own}));
    EXPECT_EQ(settings.hotbarAssignments.size(), 9);
}

TEST(HotbarSlots, ANumberOutsideTheRangeLooksUpAnEmptySlotOfThatNumber)
{
    EXPECT_EQ(AppSettings::defaults().assignment(42), (HotbarSlotAssignment{42, {}, {}, {}}));
}

TEST(HotbarSlots, EverySlotHasAnEffectiveShortcut)
{
    AppSettings settings = AppSettings::defaults();
    EXPECT_EQ(settings.assignment(9).effectiveShortcut(), (HotkeyShortcut{25, 2304}));
    settings.setHotbarShortcut(9, HotkeyShortcut{1, 256});
    EXPECT_EQ(settings.assignment(9).effectiveShortcut(), (HotkeyShortcut{1, 256}));
    EXPECT_FALSE(settings.assignment(4294967297).effectiveShortcut());
}

TEST(HotbarSlots, TheSettingsTellTheShortcutOfASlot)
{
    AppSettings settings = AppSettings::defaults();
    settings.setHotbarShortcut(2, HotkeyShortcut{1, 256});
    EXPECT_EQ(settings.hotbarShortcut(1), (HotkeyShortcut{18, 2304}));
    EXPECT_EQ(settings.hotbarShortcut(2), (HotkeyShortcut{1, 256}));
    EXPECT_FALSE(settings.hotbarShortcut(0));
    EXPECT_FALSE(settings.hotbarShortcut(10));

    settings.hotbarAssignments = {{12, {}, {}, HotkeyShortcut{3, 512}}};
    EXPECT_EQ(settings.hotbarShortcut(12), (HotkeyShortcut{3, 512}));
    EXPECT_EQ(settings.hotbarShortcut(9), (HotkeyShortcut{25, 2304})) << "a slot without an entry";
}

TEST(HotbarSlots, TheDisplayNameFallsBackToTheIdentifierAndThenToUnassigned)
{
    EXPECT_EQ((HotbarSlotAssignment{1, u"id"_s, u"Name"_s, {}}).displayName(), u"Name"_s);
    EXPECT_EQ((HotbarSlotAssignment{1, u"id"_s, u""_s, {}}).displayName(), u"id"_s);
    EXPECT_EQ((HotbarSlotAssignment{1, u""_s, {}, {}}).displayName(), u"Unassigned"_s);
}

TEST(AppSettings, TheDefaultsAreThoseOfANewUser)
{
    const AppSettings &settings = AppSettings::defaults();
    EXPECT_EQ(settings.shortcut, (HotkeyShortcut{49, 768}));
    EXPECT_EQ(settings.whisperCLIPath, u"/opt/homebrew/bin/whisper-cli"_s);
    EXPECT_TRUE(settings.modelDownloadURL.startsWith(u"https://"_s));
    EXPECT_TRUE(settings.modelDownloadURL.endsWith(u"/ggml-base.bin"_s));
    EXPECT_EQ(settings.modelSHA256, u""_s);
    EXPECT_EQ(settings.transcriptionLanguage, u"auto"_s);
    EXPECT_EQ(settings.decodingProfile, WhisperDecodingProfile::balanced);
    EXPECT_EQ(settings.theme, AppTheme::light);
    EXPECT_EQ(settings.hotbarAssignments, AppSettings::defaultHotbarAssignments());
}

TEST(AppSettings, ADocumentWithTheRequiredKeysAloneTakesTheDefaultsOfTheOthers)
{
    const AppSettings settings = AppSettings::fromJson(documentWith({}));
    EXPECT_EQ(settings.whisperCLIPath, u"/w"_s);
    EXPECT_EQ(settings.transcriptionLanguage, u"auto"_s);
    EXPECT_EQ(settings.decodingProfile, WhisperDecodingProfile::balanced);
    EXPECT_EQ(settings.theme, AppTheme::light);
    EXPECT_EQ(settings.hotbarAssignments, AppSettings::defaultHotbarAssignments());
}

TEST(AppSettings, NullCountsAsAbsentForTheOptionalKeysAndAnEmptyLanguageIsKept)
{
    const AppSettings settings = AppSettings::fromJson(documentWith(
        R"("transcriptionLanguage":null,"decodingProfile":null,"theme":null,
           "hotbarAssignments":null)"));
    EXPECT_EQ(settings.transcriptionLanguage, u"auto"_s);
    EXPECT_EQ(settings.theme, AppTheme::light);
    EXPECT_EQ(
        AppSettings::fromJson(documentWith(R"("transcriptionLanguage":"")")).transcriptionLanguage,
        u""_s);
}

TEST(AppSettings, StoredSlotsAreNormalised)
{
    const AppSettings settings = AppSettings::fromJson(documentWith(
        R"("hotbarAssignments":[{"slotIndex":2,"bundleIdentifier":"first"},
           {"slotIndex":2,"appName":"Second","shortcut":{"keyCode":1,"modifiers":256}},
           {"slotIndex":12,"bundleIdentifier":"gone","unknown":1}])"));
    auto expected = AppSettings::defaultHotbarAssignments();
    expected[1] = {2, {}, u"Second"_s, HotkeyShortcut{1, 256}};
    EXPECT_EQ(settings.hotbarAssignments, expected);
}

TEST(AppSettings, EveryKindOfDamageIsRefused)
{
    const QByteArray documents[] = {
        "",
        "null",
        "[]",
        "{",
        "{}",
        documentWith({}).chopped(1),
        documentWith({}) + "x",
        documentWith({}).replace("\"modelSHA256\":\"\"", "\"modelSHA256\":null"),
        documentWith({}).replace("\"modelSHA256\":\"\"", "\"modelSHA256\":7"),
        documentWith({}).replace("\"whisperCLIPath\"", "\"whisperCliPath\""),
        documentWith({}).replace("{\"keyCode\":49,\"modifiers\":768}", "\"space\""),
        documentWith({}).replace("\"/w\"", "\"\xff\xfe\""),
        documentWith({}).replace("\"/w\"", R"("\q")"),
        documentWith({}).replace("\"/w\"", R"("\u12g4")"),
        documentWith({}).replace("\"/w\"", R"("half \ud83d")"),
        documentWith({}).replace("\"/w\"", R"("half \ude00")"),
        documentWith({}).replace("\"/w\"", "\"a\nb\""),
        documentWith({}).replace("\"/w\"", "\"a\tb\""),
        documentWith({}).replace("\"/w\"", QByteArray("\"a\0b\"", 5)),
        documentWith({}).replace(":49", ":49."),
        documentWith({}).replace(":49", ":.49e2"),
        documentWith({}).replace(":49", ":049"),
        documentWith({}).replace(":49", ":+49"),
        documentWith("\"unknown\":\"\\q\""),
        documentWith("\"unknown\":[1.]"),
        documentWith("\"unknown\":[1,]"),
        documentWith("\"theme\":\"system\""),
        documentWith("\"theme\":\"Light\""),
        documentWith("\"theme\":1"),
        documentWith("\"decodingProfile\":\"fast\""),
        documentWith("\"transcriptionLanguage\":[]"),
        documentWith("\"hotbarAssignments\":{}"),
        documentWith("\"hotbarAssignments\":[null]"),
        documentWith("\"hotbarAssignments\":[{\"appName\":\"no number\"}]"),
        documentWith("\"hotbarAssignments\":[{\"slotIndex\":1.5}]"),
        documentWith("\"hotbarAssignments\":[{\"slotIndex\":1,\"appName\":5}]"),
        documentWith("\"hotbarAssignments\":[{\"slotIndex\":1,\"shortcut\":{\"keyCode\":1}}]"),
    };
    for (const QByteArray &document : documents)
        EXPECT_THROW(AppSettings::fromJson(document), JsonDecodingError) << document.toStdString();
}

TEST(AppSettings, EscapedCharactersAndAnyKeyOrderAreRead)
{
    const AppSettings settings = AppSettings::fromJson(
        R"({"theme":"dark","modelSHA256":"","modelDownloadURL":"https:\/\/example.org\/\u00e9",
            "whisperCLIPath":"\"\\\ud83d\ude00","shortcut":{"modifiers":0,"keyCode":0}})");
    EXPECT_EQ(settings.modelDownloadURL, u"https://example.org/é"_s);
    EXPECT_EQ(settings.whisperCLIPath, u"\"\\😀"_s);
    EXPECT_EQ(settings.theme, AppTheme::dark);
}

TEST(AppSettings, WhatIsEncodedDecodesToTheSameRecord)
{
    AppSettings settings = AppSettings::defaults();
    settings.shortcut = {24, 4096 + 1};
    settings.whisperCLIPath = u" /path with \"quotes\" and 😀 "_s;
    settings.modelSHA256 = u"ABCDEF"_s;
    settings.transcriptionLanguage = u""_s;
    settings.decodingProfile = WhisperDecodingProfile::accurate;
    settings.theme = AppTheme::dark;
    settings.setHotbarAssignment(5, u"org.example.Editor"_s, std::nullopt);
    settings.setHotbarShortcut(7, HotkeyShortcut{4294967295, 4294967295});
    EXPECT_EQ(AppSettings::fromJson(settings.toJson()), settings);
}

TEST(AppSettings, HalfACharacterDoesNotMakeTheDocumentUnreadable)
{
    AppSettings settings = AppSettings::defaults();
    const QString half = u"a"_s + QChar(0xD83D) + u"b"_s;
    settings.whisperCLIPath = settings.modelDownloadURL = half;
    settings.modelSHA256 = settings.transcriptionLanguage = half;
    settings.setHotbarAssignment(5, half, half);
    const AppSettings stored = AppSettings::fromJson(settings.toJson());
    EXPECT_EQ(stored.whisperCLIPath, u"a?b"_s);
    EXPECT_EQ(stored.assignment(5).appName, stored.whisperCLIPath);
}

TEST(AppSettings, AbsentSlotFieldsAreLeftOutOfTheDocument)
{
    AppSettings settings = AppSettings::defaults();
    settings.setHotbarAssignment(1, u"org.example.Editor"_s, std::nullopt);
    const QByteArray json = settings.toJson();
    EXPECT_TRUE(json.contains(R"({"bundleIdentifier":"org.example.Editor","slotIndex":1})"));
    EXPECT_TRUE(json.contains(R"({"slotIndex":2})"));
    EXPECT_FALSE(json.contains("null"));
    EXPECT_FALSE(json.contains('\n'));
}

} // namespace
} // namespace kestrova
