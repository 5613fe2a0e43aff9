#pragma once

#include "Platform/Platform.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace kestrova {

/// A desktop with somebody who sits at it: what a back end is tested on. Main thread. What waits
/// for the desktop gives up after a generous limit, by std::runtime_error.
class ConformanceDesktop
{
public:
    /// Two applications that are installed, of one window each.
    static inline const QString editor = QStringLiteral("org.example.Editor");
    static inline const QString browser = QStringLiteral("org.example.Browser");

    virtual ~ConformanceDesktop() = default;

    virtual Platform &platform() = 0;

    /// Starts the application and waits until the keyboard is its own. Its process.
    virtual qint32 start(const QString &identifier) = 0;
    /// Its window becomes the one with the keyboard, by the user's own hand.
    virtual void turnTo(const QString &identifier) = 0;
    /// Presses the shortcut and lets go of it, while an application of others has the keyboard. On
    /// a desktop that asks its user about shortcuts, the user has agreed to all before.
    virtual void press(const HotkeyShortcut &shortcut) = 0;
    /// How many keystrokes the application in front has got; modifiers alone are none.
    virtual int keystrokesInFront() = 0;

    /// Another program asks for the text on the clipboard.
    virtual std::optional<QString> readClipboard() = 0;
    /// Another program puts a text there.
    virtual void writeClipboard(const QString &text) = 0;

    /// Whether the condition came true before a generous limit.
    virtual bool waitUntil(const std::function<bool()> &condition) = 0;
};

/// Which desktop a suite runs on.
struct ConformanceCase
{
    const char *name;
    std::unique_ptr<ConformanceDesktop> (*make)();

    friend void PrintTo(const ConformanceCase &tested, std::ostream *stream)
    {
        *stream << tested.name;
    }
};

/// What every back end does, as far as its desktop lets it: each test holds on each desktop that
/// the suite is instantiated with.
class Conformance : public testing::TestWithParam<ConformanceCase>
{
protected:
    Platform &platform() { return desktop->platform(); }
    WorkspaceCapabilities capabilities() { return platform().workspace->capabilities(); }
    std::optional<QString> front()
    {
        const auto application = platform().workspace->frontmostApplication();
        return application ? application->bundleIdentifier : std::nullopt;
    }

    const std::unique_ptr<ConformanceDesktop> desktop = GetParam().make();
};

} // namespace kestrova
