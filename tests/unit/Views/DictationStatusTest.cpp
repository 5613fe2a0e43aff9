#include "Views/DictationStatus.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

struct Case
{
    const char *name;
    DictationState state;
    PillStatus expected;
};

class DictationStatusOfEachState : public testing::TestWithParam<Case>
{
};

TEST_P(DictationStatusOfEachState, HasItsTextToneAndIcon)
{
    const PillStatus shown = dictationStatus(GetParam().state);
    EXPECT_EQ(shown.text, GetParam().expected.text);
    EXPECT_EQ(shown.tone, GetParam().expected.tone);
    EXPECT_EQ(shown.icon, GetParam().expected.icon);
}

INSTANTIATE_TEST_SUITE_P(
    , DictationStatusOfEachState,
    testing::Values(
        Case{"Idle", DictationState::idle(), {u"Ready"_s, StatusPillTone::Neutral, u"checkmark"_s}},
        Case{"Recording",
             DictationState::recording(),
             {u"Recording..."_s, StatusPillTone::Recording, u"waveform"_s}},
        Case{"Processing",
             DictationState::processing(),
             {u"AI Processing..."_s, StatusPillTone::Warning, u"hourglass"_s}},
        Case{"Error",
             DictationState::error(u"The tool failed."_s),
             {u"Error occurred"_s, StatusPillTone::Danger, u"xmark"_s}}),
    [](const auto &tested) { return std::string(tested.param.name); });

} // namespace
} // namespace kestrova
