#include "ViewModels/Texts/MicrophoneHints.h"

#include "support/QtPrinting.h"

#include <QSet>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using Condition = MicrophoneCondition;

class MicrophoneHintsTest : public testing::Test
{
protected:
    MicrophoneHintsTest() { setAuthorized(true); }

    void setAuthorized(bool isAuthorized)
    {
        PermissionSnapshot permissions;
        permissions.microphoneAuthorized = isAuthorized;
        state.permissions.set(permissions);
    }
    QString hint(Condition condition)
    {
        state.microphone.set(condition);
        return microphoneHint(state);
    }

    AppState state{AppSettings::defaults()};
};

TEST_F(MicrophoneHintsTest, EachObstacleHasItsOwnHint)
{
    const QSet<QString> hints{hint(Condition::muted), hint(Condition::monitorOnly),
                              hint(Condition::noDevice), hint(Condition::noServer)};
    EXPECT_EQ(hints.size(), 4);
    EXPECT_FALSE(hints.contains(QString()));
    EXPECT_EQ(hint(Condition::muted),
              u"The microphone is muted. Turn it up in the sound settings."_s);
}

TEST_F(MicrophoneHintsTest, WhereNothingIsKnownToBeWrongThereIsNone)
{
    EXPECT_EQ(hint(Condition::available), QString());
    EXPECT_EQ(hint(Condition::unknown), QString());
}

TEST_F(MicrophoneHintsTest, AMicrophoneThatIsNotGrantedIsToldOtherwise)
{
    setAuthorized(false);
    EXPECT_EQ(hint(Condition::noServer), QString());
}

TEST_F(MicrophoneHintsTest, EachProblemOfARecordingHasItsOwnText)
{
    EXPECT_TRUE(recordingProblemText(RecordingProblem::fileNotWritten).contains(u"disk"_s));
    EXPECT_TRUE(recordingProblemText(RecordingProblem::microphoneLost).contains(u"microphone"_s));
}

} // namespace
} // namespace kestrova
