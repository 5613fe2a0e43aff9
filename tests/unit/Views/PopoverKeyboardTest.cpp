#include "Views/PopoverSceneTest.h"

#include <QKeyEvent>

namespace kestrova {
namespace {

/// What the keys do in the open popover.
class PopoverKeyboardTest : public PopoverSceneTest
{
protected:
    void openPopover()
    {
        startPanel();
        open();
    }
    void focus(const QString &name)
    {
        QQuickItem *item = findButton(name);
        ASSERT_NE(item, nullptr) << name.toStdString();
        item->forceActiveFocus(Qt::TabFocusReason);
    }
    void send(QEvent::Type type, Qt::Key pressed, bool isRepeat = false)
    {
        QKeyEvent event(type, pressed, Qt::NoModifier, QString(), isRepeat);
        QCoreApplication::sendEvent(popover(), &event);
    }
    /// As X11 reports a key that is held for a while.
    void hold(Qt::Key pressed)
    {
        send(QEvent::KeyPress, pressed);
        for (int repeats = 0; repeats < 5; ++repeats) {
            main.runAll();
            send(QEvent::KeyRelease, pressed, /*isRepeat=*/true);
            send(QEvent::KeyPress, pressed, /*isRepeat=*/true);
        }
        send(QEvent::KeyRelease, pressed);
        main.runAll();
    }
    void escapes()
    {
        send(QEvent::KeyPress, Qt::Key_Escape);
        EXPECT_TRUE(isHidden());
    }
    int runningAnimations()
    {
        int count = 0;
        for (const QObject *object : popover()->findChildren<QObject *>())
            count +=
                object->inherits("QQuickAbstractAnimation") && object->property("running").toBool();
        return count;
    }
};

TEST_F(PopoverKeyboardTest, AButtonThatIsNoLongerShownHasTheKeyboardNoMore)
{
    state().isModelReady.set(false);
    openPopover();
    focus(u"Download ggml-base.bin"_s);
    state().isModelReady.set(true);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        send(QEvent::KeyPress, key);
        send(QEvent::KeyRelease, key);
    }
    EXPECT_FALSE(state().isPreparingModel.get());
    EXPECT_EQ(state().state.get(), DictationState::idle());
    EXPECT_TRUE(popover()->activeFocusItem()->isVisible());
    escapes();
}

TEST_F(PopoverKeyboardTest, TheTabKeyGoesOnNearAButtonThatHasGone)
{
    removeModel();
    fake.access.setAccessibilityTrusted(false);
    controller->refreshEnvironmentSnapshot();
    openPopover();
    focus(u"Grant Accessibility"_s);
    fake.access.setAccessibilityTrusted(true);
    controller->refreshEnvironmentSnapshot();
    EXPECT_EQ(findButton(u"Grant Accessibility"_s), nullptr);
    send(QEvent::KeyPress, Qt::Key_Tab);
    EXPECT_EQ(accessibleName(popover()->activeFocusItem()), u"Download ggml-base.bin"_s);
}

TEST_F(PopoverKeyboardTest, EscapeClosesItWhileTheModelDownloads)
{
    removeModel();
    state().isModelReady.set(false);
    openPopover();
    focus(u"Download ggml-base.bin"_s);
    send(QEvent::KeyPress, Qt::Key_Return);
    ASSERT_TRUE(state().isPreparingModel.get());
    escapes();
}

TEST_F(PopoverKeyboardTest, AHeldKeyPressesTheMainButtonOnce)
{
    openPopover();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        toggle();
        focus(u"Stop & Insert"_s);
        hold(key);
        EXPECT_EQ(state().state.get(), DictationState::processing()) << key;
        settle();
    }
}

TEST_F(PopoverKeyboardTest, NothingMovesInItWhileItIsClosed)
{
    removeModel();
    state().isModelReady.set(false);
    openPopover();
    controller->prepareModel(/*forceDownload=*/true);
    EXPECT_GT(runningAnimations(), 0);
    scene->dismiss();
    EXPECT_TRUE(waitUntil([this] { return runningAnimations() == 0; }));
    open();
    EXPECT_GT(runningAnimations(), 0);
}

TEST_F(PopoverKeyboardTest, NothingMovesInItWhileItIsMinimised)
{
    removeModel();
    state().isModelReady.set(false);
    open();
    controller->prepareModel(/*forceDownload=*/true);
    EXPECT_GT(runningAnimations(), 0);
    popover()->close();
    EXPECT_TRUE(waitUntil([this] { return runningAnimations() == 0; }));
}

} // namespace
} // namespace kestrova
