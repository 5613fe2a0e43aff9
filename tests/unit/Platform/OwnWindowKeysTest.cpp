#include "Platform/Linux/Keys/OwnWindowKeys.h"

#include "support/ApplicationObject.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr quint32 firstScanCode = 38;
constexpr quint32 secondScanCode = 24;
constexpr KeyEvent first{firstScanCode};
constexpr KeyEvent second{secondScanCode};
constexpr KeyEvent repeat{firstScanCode, 0, true};
constexpr KeyEvent flags{.type = KeyEvent::flagsChanged};

/// Keys as Qt sends them to windows. For the translation the scan code is the key code, and a
/// release counts, as a modifier's does.
class OwnWindowKeysTest : public testing::Test
{
protected:
    /// What the window system says of a key.
    struct Key
    {
        quint32 scanCode = firstScanCode;
        quint64 time = 0;
        bool isAutoRepeat = false;
    };

    static std::optional<KeyEvent> translate(const QKeyEvent &key)
    {
        return key.type() == QEvent::KeyRelease ? flags : KeyEvent{key.nativeScanCode()};
    }

    /// Whether the window was kept from getting it, or for the question, from being asked.
    bool isKept(QEvent::Type type, const Key &key, QWindow &window)
    {
        QKeyEvent event(type, Qt::Key_A, Qt::NoModifier, key.scanCode, 0, 0, QString(),
                        key.isAutoRepeat);
        event.setTimestamp(key.time);
        event.ignore();
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }
    bool press(const Key &key)
    {
        const bool isNoShortcut = isKept(QEvent::ShortcutOverride, key, m_window);
        EXPECT_EQ(isKept(QEvent::KeyPress, key, m_window), isNoShortcut);
        return isNoShortcut;
    }
    bool release(const Key &key) { return isKept(QEvent::KeyRelease, key, m_window); }

    void consume(quint32 keyCode) { m_consumed = keyCode; }

    ApplicationObject<QGuiApplication> m_application{"offscreen"};
    QWindow m_window;
    QWindow m_popup;
    PostedKeys m_postedKeys;
    KeyEventHandlers m_handlers;
    std::unique_ptr<OwnWindowKeys> m_keys =
        std::make_unique<OwnWindowKeys>(m_postedKeys, m_handlers, translate);
    std::vector<KeyEvent> m_reported;
    quint32 m_consumed = 9999;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_monitor =
        m_handlers.add(KeyEvent::keyDown | KeyEvent::flagsChanged, [this](const KeyEvent &event) {
            m_reported.push_back(event);
            return event.keyCode == m_consumed;
        });
};

TEST_F(OwnWindowKeysTest, APressIsReportedOnceAndItsWindowGetsIt)
{
    EXPECT_FALSE(press({.time = 1}));
    EXPECT_FALSE(release({.time = 2}));
    EXPECT_THAT(m_reported, ElementsAre(first, flags));
}

TEST_F(OwnWindowKeysTest, AConsumedPressIsNeitherAShortcutNorAKeyOfTheWindow)
{
    consume(firstScanCode);
    EXPECT_TRUE(press({.time = 1}));
    EXPECT_FALSE(press({secondScanCode, 2}));
    EXPECT_THAT(m_reported, ElementsAre(first, second));
}

TEST_F(OwnWindowKeysTest, APressThatNobodyWasAskedAboutIsReportedToo)
{
    consume(firstScanCode);
    EXPECT_TRUE(isKept(QEvent::KeyPress, {.time = 1}, m_window));
    EXPECT_THAT(m_reported, ElementsAre(first));
}

TEST_F(OwnWindowKeysTest, AKeyThatAPopupAndThenItsWindowGetIsOne)
{
    for (QWindow *window : {&m_popup, &m_window})
        isKept(QEvent::ShortcutOverride, {.time = 1}, *window);
    for (QWindow *window : {&m_popup, &m_window})
        isKept(QEvent::KeyPress, {.time = 1}, *window);
    for (QWindow *window : {&m_popup, &m_window})
        isKept(QEvent::KeyRelease, {.time = 1}, *window);
    EXPECT_THAT(m_reported, ElementsAre(first, flags));
}

TEST_F(OwnWindowKeysTest, PressesWithinAMillisecondAreSeveral)
{
    press({.time = 1});
    press({secondScanCode, 1});
    press({.time = 1});
    press({.time = 1});
    EXPECT_THAT(m_reported, ElementsAre(first, second, first, first));
}

TEST_F(OwnWindowKeysTest, ARepeatIsAReleaseAndAPressAtOnceOrWhatQtCallsOne)
{
    press({.time = 1});
    release({.time = 500});
    press({.time = 500});
    press({.time = 600, .isAutoRepeat = true});
    release({.time = 700});
    press({.time = 701});
    EXPECT_THAT(m_reported, ElementsAre(first, flags, repeat, repeat, flags, first));
}

TEST_F(OwnWindowKeysTest, OurOwnKeysAreNotReportedAndTheWindowGetsThem)
{
    consume(firstScanCode);
    m_postedKeys.announce({{true, firstScanCode}, {false, firstScanCode}});
    EXPECT_FALSE(press({.time = 1}));
    EXPECT_FALSE(release({.time = 2}));
    EXPECT_THAT(m_reported, IsEmpty());
    EXPECT_TRUE(press({.time = 3}));
    EXPECT_THAT(m_reported, ElementsAre(first));
}

TEST_F(OwnWindowKeysTest, WhatIsNoKeyOfAKeyboardIsNotReported)
{
    EXPECT_FALSE(press({.scanCode = 0, .time = 1}));
    QKeyEvent handedOn(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, firstScanCode, 0, 0);
    QObject item;
    QCoreApplication::sendEvent(&item, &handedOn);
    EXPECT_THAT(m_reported, IsEmpty());
}

TEST_F(OwnWindowKeysTest, AHandlerMayEndAll)
{
    const auto ending = m_handlers.add(KeyEvent::keyDown, [this](const KeyEvent &) {
        m_keys.reset();
        return true;
    });
    EXPECT_TRUE(isKept(QEvent::ShortcutOverride, {.time = 1}, m_window));
    EXPECT_FALSE(isKept(QEvent::KeyPress, {.time = 1}, m_window));
    EXPECT_THAT(m_reported, ElementsAre(first));
}

} // namespace
} // namespace kestrova
