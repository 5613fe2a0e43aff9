#include "Models/AppSettings.h"

#include "Models/JsonObjectReader.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

const QByteArray minimalDocument = R"({"shortcut":{"keyCode":49,"modifiers":768},
    "whisperCLIPath":"/w","modelDownloadURL":"https://example.org/m.bin","modelSHA256":""})";

TEST(AppSettings, ADocumentWithTheRequiredKeysAloneTakesTheDefaultsOfTheOthers)
{
    const AppSettings settings = AppSettings::fromJson(minimalDocument);
    EXPECT_EQ(settings.transcriptionLanguage, u"auto"_s);
    EXPECT_EQ(settings.decodingProfile, WhisperDecodingProfile::balanced);
    EXPECT_EQ(settings.theme, AppTheme::light);
    EXPECT_EQ(settings.hotbarAssignments, AppSettings::defaultHotbarAssignments());
}

} // namespace
} // namespace kestrova
