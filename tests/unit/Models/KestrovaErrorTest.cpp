#include "Models/KestrovaError.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

TEST(KestrovaError, AChecksumMismatchNamesBothDigests)
{
    EXPECT_EQ(KestrovaError::checksumMismatch(u"ab"_s, u"cd"_s).errorDescription(),
              u"Model checksum mismatch. Expected ab, got cd."_s);
}

TEST(KestrovaError, AMissingModelIsNamedByItsPathWithoutScheme)
{
    const auto url = QUrl::fromLocalFile(u"/tmp/m.bin"_s);
    EXPECT_EQ(KestrovaError::missingModel(url).errorDescription(),
              u"Model file not found at /tmp/m.bin."_s);
}

TEST(KestrovaError, AMissingModelsPathIsNotPercentEncoded)
{
    const auto url = QUrl::fromLocalFile(u"/tmp/my model é%.bin"_s);
    EXPECT_EQ(KestrovaError::missingModel(url).errorDescription(),
              u"Model file not found at /tmp/my model é%.bin."_s);
}

TEST(KestrovaError, TheStringCarryingKindsDescribeThemselvesByTheirMessage)
{
    EXPECT_EQ(KestrovaError::invalidState(u""_s).errorDescription(), u""_s);
    EXPECT_EQ(KestrovaError::processFailed(u"p"_s).errorDescription(), u"p"_s);
    EXPECT_EQ(KestrovaError::configuration(u"c"_s).errorDescription(), u"c"_s);
    EXPECT_EQ(KestrovaError::processFailed(u"p"_s).kind(), KestrovaError::Kind::processFailed);
}

TEST(KestrovaError, SilenceIsNamed)
{
    EXPECT_EQ(KestrovaError::emptyTranscription().errorDescription(), u"No speech detected."_s);
}

TEST(UserFacingDescription, IsTheReadableTextOrElseWhatTheExceptionSays)
{
    EXPECT_EQ(userFacingDescription(PlatformError(u"Größe"_s)), u"Größe"_s);
    EXPECT_EQ(userFacingDescription(KestrovaError::emptyTranscription()), u"No speech detected."_s);
    EXPECT_EQ(userFacingDescription(std::runtime_error("plain")), u"plain"_s);
}

} // namespace
} // namespace kestrova
