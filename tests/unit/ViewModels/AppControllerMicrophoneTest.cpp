#include "ViewModels/ControllerTest.h"

namespace kestrova {
namespace {

using AppControllerMicrophoneTest = ControllerTest;

TEST_F(AppControllerMicrophoneTest, TheStateFollowsTheMicrophone)
{
    fake.audioInput.setCondition(MicrophoneCondition::muted);
    EXPECT_EQ(state().microphone.get(), MicrophoneCondition::unknown) << "the news is a task";
    settle();
    EXPECT_EQ(state().microphone.get(), MicrophoneCondition::muted);
    launch();
    EXPECT_EQ(state().microphone.get(), MicrophoneCondition::muted) << "known from the start";
}

TEST_F(AppControllerMicrophoneTest, ASoundServerThatIsNotThereIsLookedForAtEachReading)
{
    controller->refreshEnvironmentSnapshot();
    settle();
    EXPECT_EQ(fake.audioInput.reconnectionCount(), 0);
    fake.audioInput.setCondition(MicrophoneCondition::noServer);
    settle();
    controller->refreshEnvironmentSnapshot();
    settle();
    EXPECT_EQ(fake.audioInput.reconnectionCount(), 1);
}

TEST_F(AppControllerMicrophoneTest, WhyARecordingIsNotWholeIsShownUntilTheNext)
{
    toggle();
    fake.audioInput.tellProblem(RecordingProblem::fileNotWritten);
    toggle();
    EXPECT_EQ(inserter->insertions.size(), 1U) << "what was said until then is used";
    EXPECT_EQ(state().recordingProblem.get(), RecordingProblem::fileNotWritten);
    EXPECT_EQ(state().state.get(), DictationState::idle());
    toggle();
    EXPECT_FALSE(state().recordingProblem.get());
}

TEST_F(AppControllerMicrophoneTest, NothingIsToldAfterTheEnd)
{
    end();
    fake.audioInput.setCondition(MicrophoneCondition::muted);
    fake.audioInput.tellProblem(RecordingProblem::microphoneLost);
    EXPECT_TRUE(main.isIdle());
}

} // namespace
} // namespace kestrova
