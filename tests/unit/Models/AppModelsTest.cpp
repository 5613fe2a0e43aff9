#include "Models/Date.h"
#include "Models/Dictation/DictationState.h"
#include "Models/Dictation/TranscriptInsertionPayload.h"
#include "Models/Dictation/WhisperDecodingProfile.h"
#include "Models/PermissionSnapshot.h"
#include "Models/Settings/AppTheme.h"
#include "Models/Usage/UsageTrendPeriod.h"
#include "support/DateText.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

template <typename E>
QStringList namesOfAll()
{
    QStringList names;
    for (const E value : allCases<E>()) {
        names.append(rawValue(value));
        EXPECT_EQ(fromRawValue<E>(rawValue(value)), value);
    }
    return names;
}

TEST(RawValues, EachEnumerationListsItsCasesInDeclarationOrder)
{
    EXPECT_EQ(namesOfAll<AppTheme>(), QStringList({u"light"_s, u"dark"_s}));
    EXPECT_EQ(namesOfAll<WhisperDecodingProfile>(), QStringList({u"balanced"_s, u"accurate"_s}));
    EXPECT_EQ(namesOfAll<UsageTrendPeriod>(),
              QStringList({u"hourly"_s, u"daily"_s, u"weekly"_s, u"monthly"_s}));
    EXPECT_EQ(namesOfAll<MicrophoneAuthorizationState>(),
              QStringList({u"authorized"_s, u"denied"_s, u"restricted"_s, u"notDetermined"_s,
                           u"unknown"_s}));
}

TEST(RawValues, OnlyTheExactNameIsACase)
{
    EXPECT_FALSE(fromRawValue<AppTheme>(u"Light"_s));
    EXPECT_FALSE(fromRawValue<AppTheme>(u" light"_s));
    EXPECT_FALSE(fromRawValue<AppTheme>(u""_s));
}

TEST(DictationState, ErrorsAreEqualWhenTheirMessagesAre)
{
    EXPECT_EQ(DictationState::error(u"a"_s), DictationState::error(u"a"_s));
    EXPECT_NE(DictationState::error(u"a"_s), DictationState::error(u"b"_s));
    EXPECT_NE(DictationState::error(u""_s), DictationState::idle());
    EXPECT_EQ(DictationState::idle(), DictationState::idle());
}

TEST(DictationState, TheUserReadsWhatGoesOnButNoErrorsMessage)
{
    EXPECT_EQ(DictationState::idle().displayText(), u"Ready"_s);
    EXPECT_EQ(DictationState::recording().displayText(), u"Recording..."_s);
    EXPECT_EQ(DictationState::processing().displayText(), u"AI Processing..."_s);
    EXPECT_EQ(DictationState::error(u"broken"_s).displayText(), u"Error occurred"_s);
}

TEST(TranscriptInsertionPayload, EqualityCoversEveryField)
{
    const TranscriptInsertionPayload payload{u"hi"_s, 1, 2.5, TargetApplication{7, u"a"_s, {}}, 3};
    auto other = payload;
    EXPECT_EQ(payload, other);
    other.target->localizedName = u"A"_s;
    EXPECT_NE(payload, other);
    other = payload;
    other.slotIndex.reset();
    EXPECT_NE(payload, other);
}

TEST(Date, CountsFromTheFirstSecondOf2001)
{
    EXPECT_EQ(Date::fromUnixTime(978'307'200).secondsSinceReferenceDate, 0);
    EXPECT_EQ(Date{-978'307'200.0}.unixTime(), 0);
    EXPECT_LT(Date{-1.5}, Date{-1.25});
}

} // namespace
} // namespace kestrova
