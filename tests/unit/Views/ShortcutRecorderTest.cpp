#include "Views/Recorder/ShortcutRecorder.h"

#include "ViewModels/ControllerTest.h"
#include "support/ApplicationObject.h"

namespace kestrova {
namespace {

constexpr KeyEvent commandA{0, HotkeyShortcut::command};
constexpr KeyEvent escape{53};

class ShortcutRecorderTest : public ControllerTest
{
protected:
    /// Opens the recorder as a window does, whose sheet then starts the capturing.
    void open()
    {
        recorder->open(
            [this](const HotkeyShortcut &shortcut) { saved.append(shortcut.displayText()); });
        recorder->capture()->start(nullptr);
    }
    /// Whether the main shortcut starts a dictation.
    bool isArmed() { return !fake.keyboard.grabbed().isEmpty(); }

    ApplicationObject<QCoreApplication> application; // delivers what is queued
    const RecorderKeyboard keyboard{*fake.platform.keyMonitoring, *fake.platform.windowing};
    std::unique_ptr<ShortcutRecorder> recorder =
        std::make_unique<ShortcutRecorder>(*controller, keyboard);
    QStringList saved;
};

TEST_F(ShortcutRecorderTest, WhileItIsOpenNoShortcutStartsADictation)
{
    ASSERT_TRUE(isArmed());
    open();
    EXPECT_TRUE(recorder->isOpen());
    EXPECT_FALSE(isArmed());
    press(HotkeyShortcut::defaultMain());
    settle();
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_EQ(recorder->capture()->displayText(), u"⌘⇧Space"_s);
}

TEST_F(ShortcutRecorderTest, SavingHandsTheShortcutOverAndCloses)
{
    open();
    fake.keyboard.pressLocally(commandA);
    recorder->capture()->save();
    EXPECT_EQ(saved, QStringList{u"⌘A"_s});
    EXPECT_FALSE(recorder->isOpen());
    EXPECT_TRUE(isArmed());
    EXPECT_EQ(fake.keyboard.localMonitorCount(), 1);
    EXPECT_EQ(fake.keyboard.globalMonitorCount(), 1);
}

TEST_F(ShortcutRecorderTest, CancellingClosesAndSavesNothing)
{
    open();
    fake.keyboard.pressLocally(commandA);
    fake.keyboard.pressLocally(escape);
    EXPECT_EQ(saved, QStringList());
    EXPECT_FALSE(recorder->isOpen());
    EXPECT_TRUE(isArmed());
    EXPECT_FALSE(fake.keyboard.pressLocally(commandA));
}

TEST_F(ShortcutRecorderTest, ItsEndArmsTheShortcuts)
{
    open();
    recorder.reset();
    EXPECT_TRUE(isArmed());
    EXPECT_EQ(fake.keyboard.localMonitorCount(), 1);
}

TEST_F(ShortcutRecorderTest, AChangeOfTheSettingsMeanwhileDoesNotArmTheShortcuts)
{
    open();
    assign(3, u"org.example.Editor"_s, u"Editor"_s);
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(isArmed());
    recorder->capture()->cancel();
    EXPECT_TRUE(isArmed());
}

TEST_F(ShortcutRecorderTest, OneIsOpenAtATime)
{
    open();
    ShortcutRecorder other(*controller, keyboard);
    other.open([](const HotkeyShortcut &) {});
    EXPECT_FALSE(recorder->isOpen());
    EXPECT_TRUE(other.isOpen());
    EXPECT_FALSE(isArmed());
    EXPECT_EQ(fake.keyboard.localMonitorCount(), 0);
    open();
    EXPECT_FALSE(other.isOpen());
    EXPECT_FALSE(isArmed());
}

TEST_F(ShortcutRecorderTest, OpeningAndClosingIsAnnounced)
{
    QStringList announced;
    QObject::connect(recorder.get(), &ShortcutRecorder::isOpenChanged, recorder.get(),
                     [&] { announced.append(recorder->isOpen() ? u"open"_s : u"closed"_s); });
    open();
    recorder->capture()->cancel();
    recorder->capture()->cancel();
    EXPECT_EQ(announced, (QStringList{u"open"_s, u"closed"_s}));
}

} // namespace
} // namespace kestrova
