#include "Views/Dashboard/Charts/ValueAxis.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(ValueAxis, EndsAtARoundNumberAboveTheMost)
{
    EXPECT_EQ(ValueAxis::reaching(672), (ValueAxis{200, 4}));
    EXPECT_EQ(ValueAxis::reaching(2843), (ValueAxis{1000, 3}));
    EXPECT_EQ(ValueAxis::reaching(125), (ValueAxis{25, 5}));
    EXPECT_EQ(ValueAxis::reaching(126), (ValueAxis{50, 3}));
    EXPECT_EQ(ValueAxis::reaching(1000), (ValueAxis{200, 5})) << "the most may touch the top";
}

TEST(ValueAxis, CountsAreWhole)
{
    EXPECT_EQ(ValueAxis::reaching(1), (ValueAxis{1, 3}));
    EXPECT_EQ(ValueAxis::reaching(5), (ValueAxis{1, 5}));
    EXPECT_EQ(ValueAxis::reaching(12), (ValueAxis{5, 3})) << "no steps of 2.5";
}

TEST(ValueAxis, ShowsZeroAndOneWhenThereIsNothing)
{
    EXPECT_EQ(ValueAxis::reaching(0).labels(), QStringList({u"0"_s, u"1"_s}));
    EXPECT_EQ(ValueAxis::reaching(-5).labels(), QStringList({u"0"_s, u"1"_s}));
}

TEST(ValueAxis, LabelsEveryLine)
{
    EXPECT_EQ(ValueAxis::reaching(672).labels(),
              QStringList({u"0"_s, u"200"_s, u"400"_s, u"600"_s, u"800"_s}));
    EXPECT_EQ(ValueAxis::reaching(9e6).labels().last(), u"10000000"_s);
}

bool isRoundStep(double step)
{
    const double power = std::pow(10, std::floor(std::log10(step) + 1e-9));
    const double factor = step / power;
    return factor == 1 || factor == 2 || factor == 2.5 || factor == 5;
}

TEST(ValueAxis, HasThreeToFiveRoundStepsWhateverTheMost)
{
    for (double most = 1; most < 1e7; most = std::floor(most * 1.01) + 1) {
        const ValueAxis axis = ValueAxis::reaching(most);
        EXPECT_GE(axis.stepCount, 3) << most;
        EXPECT_LE(axis.stepCount, 5) << most;
        EXPECT_GE(axis.top(), most);
        EXPECT_TRUE(isRoundStep(axis.step)) << axis.step;
    }
}

TEST(ValueAxis, CountsAtTheLimitOfTheirTypeHaveAnAxis)
{
    const double most = double(std::numeric_limits<qint64>::max());
    EXPECT_EQ(ValueAxis::reaching(most), (ValueAxis{2e18, 5}));
}

} // namespace
} // namespace kestrova
