#include "Views/Dashboard/Overview/OverviewRows.h"
#include "Views/Dashboard/UsageText.h"
#include "support/QtPrinting.h"

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

TEST(OverviewRows, OnlySlotsWithAnApplicationAreListed)
{
    AppSettings settings = AppSettings::defaults();
    settings.setHotbarAssignment(2, u"org.example.Editor"_s, u"Editor"_s);
    settings.setHotbarAssignment(5, u"org.example.Browser"_s, u"Browser"_s);
    settings.setHotbarAssignment(7, std::nullopt, u"Name only"_s);
    const QList<SlotUsageStat> usage{{1, 9}, {5, 3}, {2, 4}, {7, 8}};
    EXPECT_EQ(overviewSlotUsageRows(usage, settings),
              (QList<OverviewSlotUsageRow>{{5, u"Browser"_s, 3}, {2, u"Editor"_s, 4}}));
}

TEST(OverviewRows, AnEmptyIdentifierIsNoApplication)
{
    AppSettings settings = AppSettings::defaults();
    settings.hotbarAssignments[0].bundleIdentifier = u""_s;
    EXPECT_TRUE(overviewSlotUsageRows({{1, 9}}, settings).isEmpty());
}

TEST(OverviewRows, LabelsAreTrimmedNamesOrTheSlotsNumber)
{
    AppSettings settings = AppSettings::defaults();
    settings.setHotbarAssignment(1, u"org.example.Editor"_s, u" \n Text Editor\t"_s);
    settings.setHotbarAssignment(2, u"org.example.Editor"_s, u" \n\t"_s);
    settings.setHotbarAssignment(3, u"org.example.Editor"_s, std::nullopt);
    EXPECT_EQ(overviewSlotUsageRows({{1, 0}, {2, 0}, {3, 0}}, settings),
              (QList<OverviewSlotUsageRow>{
                  {1, u"Text Editor"_s, 0}, {2, u"Slot 2"_s, 0}, {3, u"Slot 3"_s, 0}}));
}

TEST(OverviewRows, BarsAreScaledToTheLargestCount)
{
    EXPECT_THAT(barShares({4, 2, 0}), ElementsAre(1, 0.5, 0));
    EXPECT_THAT(barShares({0, 0}), ElementsAre(0, 0));
    EXPECT_THAT(barShares({}), ElementsAre());
}

TEST(UsageText, NumbersAreWordedWithOneDecimalAndTheirUnit)
{
    EXPECT_EQ(oneDecimal(46.55), u"46.5"_s) << "the nearest double lies below";
    EXPECT_EQ(oneDecimal(0), u"0.0"_s);
    EXPECT_EQ(minutesText(5.46), u"5.5 mins"_s);
    EXPECT_EQ(wordsText(1937), u"1937 words"_s);
    EXPECT_EQ(wordsText(1), u"1 words"_s);
}

} // namespace
} // namespace kestrova
