#include "ViewModels/MicrophonePermissionMessages.h"

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

} // namespace
} // namespace kestrova
