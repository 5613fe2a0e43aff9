#include "ViewModels/Texts/MicrophonePermissionMessages.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

TEST(MicrophonePermissionMessages, EachStateHasItsOwn)
{
    const auto message = [](State state) {
        return microphonePermissionRecoveryMessage(state, u"org.example.App"_s);
    };
    EXPECT_EQ(message(State::authorized), u"Microphone permission granted."_s);
    EXPECT_EQ(message(State::denied),
              u"Microphone access is denied for Kestrova. Enable it in System Settings > Privacy & "
              "Security > Microphone.\nIf Kestrova is missing from that list, run `tccutil reset "
              "Microphone org.example.App` in Terminal, relaunch Kestrova, and request again."_s);
    EXPECT_EQ(message(State::restricted), u"Microphone access is restricted by macOS policy (for "
                                          "example Screen Time or MDM)."_s);
    EXPECT_EQ(message(State::notDetermined),
              u"macOS did not finish the microphone permission prompt yet.\nMake sure you launched "
              "`/Applications/Kestrova.app`, then request again. If it still does not appear, run "
              "`tccutil reset Microphone org.example.App` and relaunch Kestrova."_s);
    EXPECT_EQ(
        message(State::unknown),
        u"Microphone permission status is unknown.\nOpen System Settings > Privacy & Security "
        "> Microphone. If Kestrova is missing, run `tccutil reset Microphone org.example.App` "
        "and relaunch."_s);
}

TEST(MicrophonePermissionMessages, AProgramWithoutIdentifierIsNamedAllTheSame)
{
    EXPECT_TRUE(microphonePermissionRecoveryMessage(State::unknown, std::nullopt)
                    .contains(u"`tccutil reset Microphone com.kestrova.app`"_s));
    EXPECT_EQ(microphonePermissionHint(std::nullopt),
              u"If Kestrova is missing in Microphone settings: `tccutil reset Microphone "
              "com.kestrova.app`"_s);
    EXPECT_EQ(microphonePermissionHint(u"org.example.App"_s),
              u"If Kestrova is missing in Microphone settings: `tccutil reset Microphone "
              "org.example.App`"_s);
}

TEST(MicrophonePermissionMessages, EachStateIsToldInOneSentence)
{
    EXPECT_EQ(microphonePermissionStatusMessage(State::authorized),
              u"Microphone permission granted."_s);
    EXPECT_EQ(microphonePermissionStatusMessage(State::denied),
              u"Microphone permission was denied for this app in macOS privacy settings."_s);
    EXPECT_EQ(microphonePermissionStatusMessage(State::restricted),
              u"Microphone permission is restricted by system policy (for example Screen Time or "
              "MDM)."_s);
    EXPECT_EQ(microphonePermissionStatusMessage(State::notDetermined),
              u"macOS has not completed the microphone permission flow for this app yet."_s);
    EXPECT_EQ(microphonePermissionStatusMessage(State::unknown),
              u"Microphone permission status is unknown."_s);
}

} // namespace
} // namespace kestrova
