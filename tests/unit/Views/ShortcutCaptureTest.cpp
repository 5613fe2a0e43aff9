#include "Views/Recorder/ShortcutCapture.h"

#include "Platform/Fake/FakeWindowing.h"
#include "Platform/Fake/Keys/FakeKeyEventMonitoring.h"
#include "support/QtPrinting.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

constexpr quint32 command = HotkeyShortcut::command;
constexpr quint32 shift = HotkeyShortcut::shift;
constexpr quint32 option = HotkeyShortcut::option;
constexpr quint32 control = HotkeyShortcut::control;
constexpr quint32 aKey = 0;
constexpr quint32 spaceKey = 49;
constexpr quint32 escapeKey = 53;

constexpr KeyEvent modifierPressed{.type = KeyEvent::flagsChanged};
constexpr KeyEvent commandShiftSpace{spaceKey, command | shift};

class ShortcutCaptureTest : public testing::Test
{
protected:
    ShortcutCaptureTest()
    {
        QObject::connect(&capture, &ShortcutCapture::cancelled, &capture,
                         [this] { signalled.append(u"cancelled"_s); });
        QObject::connect(&capture, &ShortcutCapture::saved, &capture,
                         [this](const HotkeyShortcut &shortcut) {
                             signalled.append(u"saved "_s + shortcut.displayText());
                         });
        capture.start(nullptr);
    }

    FakeKeyEventMonitoring monitoring;
    FakeWindowing windowing{std::make_shared<FakeDesktop>()};
    ShortcutCapture capture{{monitoring, windowing}};
    QStringList signalled;
};

TEST_F(ShortcutCaptureTest, AtFirstItWaits)
{
    EXPECT_EQ(capture.displayText(), u"Waiting for input..."_s);
    EXPECT_FALSE(capture.isCaptured());
    EXPECT_EQ(capture.message(), u"Press a key combination now."_s);
}

TEST_F(ShortcutCaptureTest, AModifierAloneAsksForTheKeyAndKeepsWhatWasCaptured)
{
    monitoring.pressLocally(modifierPressed);
    EXPECT_EQ(capture.message(), u"Press a non-modifier key while holding your modifiers."_s);
    EXPECT_FALSE(capture.isCaptured());
    monitoring.pressLocally(commandShiftSpace);
    monitoring.pressLocally(modifierPressed);
    EXPECT_EQ(capture.message(), u"Press a non-modifier key while holding your modifiers."_s);
    EXPECT_EQ(capture.displayText(), u"⌘⇧Space"_s);
}

TEST_F(ShortcutCaptureTest, ACombinationIsCaptured)
{
    monitoring.pressLocally(commandShiftSpace);
    EXPECT_EQ(capture.capturedShortcut(), (HotkeyShortcut{49, 768}));
    EXPECT_TRUE(capture.isCaptured());
    EXPECT_EQ(capture.displayText(), u"⌘⇧Space"_s);
    EXPECT_EQ(capture.message(), u"Shortcut captured. Press Save to apply."_s);
}

TEST_F(ShortcutCaptureTest, EachOfTheFourModifiersIsEnough)
{
    for (const quint32 modifier : {command, shift, option, control}) {
        monitoring.pressLocally({aKey, modifier});
        EXPECT_EQ(capture.capturedShortcut(), (HotkeyShortcut{aKey, modifier}));
    }
    monitoring.pressLocally({aKey, command | shift | option | control});
    EXPECT_EQ(capture.capturedShortcut(), (HotkeyShortcut{aKey, 0x1B00}));
}

TEST_F(ShortcutCaptureTest, ALaterCombinationReplacesTheEarlierOne)
{
    monitoring.pressLocally(commandShiftSpace);
    monitoring.pressLocally({aKey, control});
    EXPECT_EQ(capture.displayText(), u"⌃A"_s);
}

TEST_F(ShortcutCaptureTest, AKeyWithoutModifierClearsWhatWasCaptured)
{
    monitoring.pressLocally(commandShiftSpace);
    monitoring.pressLocally({aKey});
    EXPECT_FALSE(capture.isCaptured());
    EXPECT_EQ(capture.displayText(), u"Waiting for input..."_s);
    EXPECT_EQ(capture.message(), u"Add at least one modifier key."_s);
}

TEST_F(ShortcutCaptureTest, CapsLockAndFunctionAreNoModifiers)
{
    constexpr quint32 capsLock = 1024;
    constexpr quint32 function = 1 << 17;
    capture.handle({aKey, capsLock | function});
    EXPECT_FALSE(capture.isCaptured());
    EXPECT_EQ(capture.message(), u"Add at least one modifier key."_s);
    capture.handle({aKey, shift | capsLock | function});
    EXPECT_EQ(capture.capturedShortcut(), (HotkeyShortcut{aKey, shift}));
}

TEST_F(ShortcutCaptureTest, RepeatsAreIgnored)
{
    monitoring.pressLocally(commandShiftSpace);
    monitoring.pressLocally(modifierPressed);
    monitoring.pressLocally({spaceKey, command | shift, true});
    monitoring.pressLocally({aKey, 0, true});
    monitoring.pressLocally({escapeKey, 0, true});
    EXPECT_EQ(capture.displayText(), u"⌘⇧Space"_s);
    EXPECT_EQ(capture.message(), u"Press a non-modifier key while holding your modifiers."_s);
    EXPECT_EQ(signalled, QStringList());
}

TEST_F(ShortcutCaptureTest, EscapeCancelsWhateverIsHeldAndIsNeverCaptured)
{
    monitoring.pressLocally(commandShiftSpace);
    monitoring.pressLocally({escapeKey});
    monitoring.pressLocally({escapeKey, command | shift});
    EXPECT_EQ(signalled, (QStringList{u"cancelled"_s, u"cancelled"_s}));
    EXPECT_EQ(capture.displayText(), u"⌘⇧Space"_s);
}

TEST_F(ShortcutCaptureTest, TheKeysOfModifiersCompleteNothing)
{
    monitoring.pressLocally(commandShiftSpace);
    for (quint32 keyCode = 54; keyCode <= 62; ++keyCode) {
        monitoring.pressLocally(modifierPressed);
        monitoring.pressLocally({keyCode, command});
        EXPECT_EQ(capture.message(), u"Press a non-modifier key to complete the shortcut."_s);
    }
    EXPECT_EQ(capture.displayText(), u"⌘⇧Space"_s);
    monitoring.pressLocally({63, command});
    EXPECT_EQ(capture.displayText(), u"⌘Key 63"_s);
}

TEST_F(ShortcutCaptureTest, OurOwnWindowsDoNotGetTheKeys)
{
    EXPECT_TRUE(monitoring.pressLocally({aKey}));
    EXPECT_TRUE(monitoring.pressLocally({aKey, 0, true}));
    EXPECT_TRUE(monitoring.pressLocally(modifierPressed));
}

TEST_F(ShortcutCaptureTest, KeysThatOtherWindowsGetAreCapturedToo)
{
    monitoring.pressGlobally(modifierPressed);
    EXPECT_EQ(capture.message(), u"Press a non-modifier key while holding your modifiers."_s);
    monitoring.pressGlobally({118, option});
    EXPECT_EQ(capture.displayText(), u"⌥Key 118"_s);
}

TEST_F(ShortcutCaptureTest, StartingAgainLeavesOnePairOfMonitorsAndForgetsWhatWasCaptured)
{
    monitoring.pressLocally(commandShiftSpace);
    capture.start(nullptr);
    EXPECT_EQ(monitoring.localMonitorCount(), 1);
    EXPECT_EQ(monitoring.globalMonitorCount(), 1);
    EXPECT_FALSE(capture.isCaptured());
    EXPECT_EQ(capture.message(), u"Press a key combination now."_s);
}

TEST_F(ShortcutCaptureTest, OnceStoppedItObservesNothing)
{
    capture.stop();
    EXPECT_EQ(monitoring.localMonitorCount(), 0);
    EXPECT_EQ(monitoring.globalMonitorCount(), 0);
    EXPECT_FALSE(monitoring.pressLocally(commandShiftSpace));
    EXPECT_FALSE(capture.isCaptured());
    capture.stop();
}

TEST_F(ShortcutCaptureTest, OnlyACapturedShortcutIsSaved)
{
    capture.save();
    EXPECT_EQ(signalled, QStringList());
    monitoring.pressLocally(commandShiftSpace);
    capture.save();
    EXPECT_EQ(signalled, QStringList{u"saved ⌘⇧Space"_s});
}

TEST_F(ShortcutCaptureTest, ItMayBeStoppedWhileItHandlesAKey)
{
    QObject::connect(&capture, &ShortcutCapture::cancelled, &capture, &ShortcutCapture::stop);
    EXPECT_TRUE(monitoring.pressLocally({escapeKey}));
    EXPECT_EQ(monitoring.localMonitorCount(), 0);
}

TEST_F(ShortcutCaptureTest, ADirectionThatCannotBeObservedIsMissing)
{
    monitoring.setGlobalAvailable(false);
    capture.start(nullptr);
    monitoring.pressLocally(commandShiftSpace);
    EXPECT_EQ(capture.displayText(), u"⌘⇧Space"_s);
}

TEST_F(ShortcutCaptureTest, ChangesAreAnnouncedOnce)
{
    int shortcuts = 0;
    int messages = 0;
    QObject::connect(&capture, &ShortcutCapture::capturedShortcutChanged, &capture,
                     [&] { ++shortcuts; });
    QObject::connect(&capture, &ShortcutCapture::messageChanged, &capture, [&] { ++messages; });
    monitoring.pressLocally(commandShiftSpace);
    monitoring.pressLocally(commandShiftSpace);
    EXPECT_EQ(shortcuts, 1);
    EXPECT_EQ(messages, 1);
}

} // namespace
} // namespace kestrova
