#include "Platform/Linux/X11/X11Session.h"

#include "support/PrivateXServer.h"

#include <gtest/gtest.h>

namespace kestrova {
namespace {

TEST(X11Session, WithoutAServerThereIsNone)
{
    EXPECT_EQ(X11Session::open(":4096"), nullptr);
}

TEST(X11Session, TheKeyboardNeedsBothExtensionsOfTheServer)
{
    EXPECT_EQ(X11Session::open()->keyboardAccess(), Access::granted);
    for (const char *missing : {"XTEST", "RECORD"}) {
        const PrivateXServer server({"-extension", missing});
        EXPECT_EQ(X11Session::open(server.displayName())->keyboardAccess(), Access::unavailable)
            << missing;
    }
}

TEST(X11Session, OnceTheServerHasGoneTheKeyboardIsClosed)
{
    PrivateXServer server;
    const auto session = X11Session::open(server.displayName());
    ASSERT_EQ(session->keyboardAccess(), Access::granted);
    server.kill();
    session->newStartupId(); // notices it
    EXPECT_EQ(session->keyboardAccess(), Access::unavailable);
}

TEST(X11Session, EveryStartupIdIsAnotherOneAndHasTheServersTime)
{
    const auto session = X11Session::open();
    const QByteArray first = session->newStartupId();
    EXPECT_NE(first, session->newStartupId());
    EXPECT_FALSE(first.endsWith("_TIME0")) << first.toStdString();
}

TEST(X11Session, QtSpeaksX11OnlyWhileTheApplicationIsMade)
{
    constexpr auto variable = "QT_QPA_PLATFORM";
    const QByteArray old = qgetenv(variable);
    qunsetenv(variable);
    const auto session = X11Session::open();
    auto preparation = session->prepareApplication();
    EXPECT_EQ(qgetenv(variable), "xcb");
    preparation.reset();
    EXPECT_FALSE(qEnvironmentVariableIsSet(variable));
    qputenv(variable, "offscreen");
    preparation = session->prepareApplication();
    EXPECT_EQ(qgetenv(variable), "offscreen") << "the user's choice";
    preparation.reset();
    EXPECT_EQ(qgetenv(variable), "offscreen");
    old.isNull() ? qunsetenv(variable) : qputenv(variable, old);
}

} // namespace
} // namespace kestrova
