#include "Models/Settings/AppSettings.h"
#include "Models/Usage/UsageEventsJson.h"
#include "support/QtPrinting.h"
#include "support/Samples.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

// Documents as the writers of other platforms give them, loaded field by field.

TEST(ForeignSettings, OneLineInAnotherOrderWithEscapedSlashes)
{
    const AppSettings settings = AppSettings::fromJson(sample("settings-compact.json"));
    EXPECT_EQ(settings.shortcut, (HotkeyShortcut{49, 768}));
    EXPECT_EQ(settings.whisperCLIPath, u"/usr/local/bin/whisper-cli"_s);
    EXPECT_EQ(settings.modelDownloadURL, u"https://models.example/ggml-base.bin?a=1&b=%C3%A9"_s);
    EXPECT_EQ(settings.modelSHA256,
              u"60ED5BC3DD14EEA856493D334349B405782DDCAF0028D4B5DF4088345FBA2EFE"_s);
    EXPECT_EQ(settings.transcriptionLanguage, u"de"_s);
    EXPECT_EQ(settings.decodingProfile, WhisperDecodingProfile::accurate);
    EXPECT_EQ(settings.theme, AppTheme::dark);

    auto slots = AppSettings::defaultHotbarAssignments();
    slots[0] = {1, u"com.example.notes"_s, u"Éditeur / \"Notes\""_s, HotkeyShortcut{18, 2304}};
    slots[2] = {3, u"com.example.mail"_s, {}, {}};
    slots[4] = {5, {}, u"日本語 🎤"_s, {}};
    slots[7] = {8, {}, {}, HotkeyShortcut{4294967295, 0}};
    EXPECT_EQ(settings.hotbarAssignments, slots);
}

TEST(ForeignSettings, PrettyPrintedWithUnknownKeysNullsAndIntegersWrittenAsFractions)
{
    const AppSettings settings = AppSettings::fromJson(sample("settings-pretty.json"));
    EXPECT_EQ(settings.shortcut, (HotkeyShortcut{5, 768}));
    EXPECT_EQ(settings.whisperCLIPath, u"C:\\Tools\\whisper cli\t\a\b\f\n\r"_s);
    EXPECT_EQ(settings.modelDownloadURL, u"https://models.example/café/😀.bin"_s);
    EXPECT_EQ(settings.modelSHA256, u""_s);
    EXPECT_EQ(settings.transcriptionLanguage, u"auto"_s);
    EXPECT_EQ(settings.decodingProfile, WhisperDecodingProfile::balanced);
    EXPECT_EQ(settings.theme, AppTheme::light);

    auto slots = AppSettings::defaultHotbarAssignments();
    slots[1] = {2, {}, u"Second"_s, {}};
    slots[4] = {5, {}, u""_s, {}};
    EXPECT_EQ(settings.hotbarAssignments, slots);
}

TEST(ForeignSettings, AByteOrderMarkAndOtherLineEndsWithTheRequiredKeysAlone)
{
    AppSettings expected = AppSettings::defaults();
    expected.shortcut = {0, 256};
    expected.whisperCLIPath = u"whisper-cli"_s;
    expected.modelDownloadURL = u""_s;
    expected.modelSHA256 = u"é"_s;
    EXPECT_EQ(AppSettings::fromJson(sample("settings-bom-crlf.json")), expected);
}

UsageEvent event(const char *id, double timestamp, qint64 wordCount, double durationMinutes)
{
    UsageEvent event;
    event.id = QUuid(QLatin1String(id));
    event.timestamp = {timestamp};
    event.wordCount = wordCount;
    event.durationMinutes = durationMinutes;
    return event;
}

TEST(ForeignUsageLog, OneLineInAnotherOrderWithSeventeenDigits)
{
    UsageEvent first = event("E621E1F8-C36C-495A-93FC-0C247A3E6E5F", 757382400.12345695, 42, 0.3);
    first.slotIndex = 9;
    first.targetBundleIdentifier = u"com.example.notes"_s;
    first.targetAppName = u"Éditeur / \"Notes\""_s;
    const UsageEvent second = event("00000000-0000-0000-0000-000000000000", 757382401, 0, 0);
    UsageEvent third = event("FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF", 757382400, -3, 2);
    third.targetAppName = u"日本語 🎤"_s;
    EXPECT_EQ(usageEventsFromJson(sample("usage-compact.json")),
              QList<UsageEvent>({first, second, third}));
}

TEST(ForeignUsageLog, PrettyPrintedWithFarDatesUnknownKeysAndIntegersWrittenAsFractions)
{
    constexpr auto id = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
    UsageEvent first = event(id, -63114076800.5, 5, std::numeric_limits<double>::max());
    first.targetAppName = u""_s;
    UsageEvent second = event(id, 253402300799.5, 5, 0);
    second.slotIndex = -10;
    second.targetBundleIdentifier = u"café\t😀"_s + QChar(0);
    const UsageEvent third =
        event("11111111-2222-3333-4444-555555555555", std::numeric_limits<double>::denorm_min(),
              std::numeric_limits<qint64>::max(), 0.1);
    EXPECT_EQ(usageEventsFromJson(sample("usage-pretty.json")),
              QList<UsageEvent>({first, second, third}));
}

TEST(ForeignUsageLog, AByteOrderMarkAndOtherLineEnds)
{
    EXPECT_EQ(usageEventsFromJson(sample("usage-bom-crlf.json")),
              QList<UsageEvent>{event("E621E1F8-C36C-495A-93FC-0C247A3E6E5F", -0.25, 1, 0.5)});
}

} // namespace
} // namespace kestrova
