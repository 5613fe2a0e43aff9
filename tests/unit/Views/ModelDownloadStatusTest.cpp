#include "Views/ModelDownloadStatus.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(ModelDownloadStatus, TellsAmountAndPercentage)
{
    const auto status = modelDownloadStatus(DownloadProgress{62'312'345, 147'951'465});
    EXPECT_EQ(status.amount, u"62 MB of 148 MB"_s);
    EXPECT_EQ(status.percentage, u"42%"_s);
    EXPECT_DOUBLE_EQ(status.fraction, 62'312'345.0 / 147'951'465.0);
}

TEST(ModelDownloadStatus, OfAnUnknownTotalItTellsTheAmountOnly)
{
    const auto status = modelDownloadStatus(DownloadProgress{62'312'345, std::nullopt});
    EXPECT_EQ(status.amount, u"62 MB"_s);
    EXPECT_EQ(status.percentage, QString());
    EXPECT_LT(status.fraction, 0);
}

TEST(ModelDownloadStatus, ATotalOfNothingIsNotKnown)
{
    const auto status = modelDownloadStatus(DownloadProgress{500, 0});
    EXPECT_EQ(status.amount, u"500 bytes"_s);
    EXPECT_LT(status.fraction, 0);
}

TEST(ModelDownloadStatus, ItStartsAtNothingAndIsCompleteOnlyAtTheEnd)
{
    EXPECT_EQ(modelDownloadStatus(DownloadProgress{0, 148'000'000}).percentage, u"0%"_s);
    EXPECT_EQ(modelDownloadStatus(DownloadProgress{147'999'999, 148'000'000}).percentage, u"99%"_s);
    EXPECT_EQ(modelDownloadStatus(DownloadProgress{148'000'000, 148'000'000}).percentage,
              u"100%"_s);
}

TEST(ModelDownloadStatus, MoreThanWasAnnouncedIsNoMoreThanAll)
{
    const auto status = modelDownloadStatus(DownloadProgress{20'000'000, 10'000'000});
    EXPECT_EQ(status.percentage, u"100%"_s);
    EXPECT_EQ(status.fraction, 1);
}

TEST(ModelDownloadStatus, WithoutADownloadItSaysNothing)
{
    const auto status = modelDownloadStatus(std::nullopt);
    EXPECT_EQ(status.amount, QString());
    EXPECT_EQ(status.percentage, QString());
    EXPECT_LT(status.fraction, 0);
}

} // namespace
} // namespace kestrova
