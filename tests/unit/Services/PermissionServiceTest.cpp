#include "Services/PermissionService.h"

#include "Platform/Fake/FakeDesktop.h"
#include "Platform/Fake/FakeSystemAccess.h"
#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

constexpr State allStates[] = {State::authorized, State::denied, State::restricted,
                               State::notDetermined, State::unknown};

RunningApplication ownApplication()
{
    RunningApplication application;
    application.processIdentifier = static_cast<qint32>(QCoreApplication::applicationPid());
    return application;
}

class PermissionServiceTest : public testing::Test
{
protected:
    void request()
    {
        service.requestMicrophonePermission([this](bool isGranted) { answers.append(isGranted); });
    }

    std::shared_ptr<FakeDesktop> desktop = std::make_shared<FakeDesktop>();
    FakeWorkspace workspace{desktop};
    FakeSystemAccess access;
    PermissionService service{access, workspace};
    QList<bool> answers;
    const QString activation =
        u"activate %1"_s.arg(static_cast<qint32>(QCoreApplication::applicationPid()));
};

TEST_F(PermissionServiceTest, TheSnapshotShowsBothPermissionsAndAsksNobody)
{
    for (const State state : allStates) {
        for (const bool isTrusted : {true, false}) {
            access.setMicrophoneState(state);
            access.setAccessibilityTrusted(isTrusted);
            EXPECT_EQ(service.currentPermissions(),
                      (PermissionSnapshot{state == State::authorized, state, isTrusted}));
        }
    }
    EXPECT_EQ(access.microphoneRequestCount(), 0);
    EXPECT_EQ(access.accessibilityPromptCount(), 0);
    EXPECT_EQ(desktop->actions(), QStringList());
}

TEST_F(PermissionServiceTest, AnAuthorizedMicrophoneIsGrantedAtOnce)
{
    request();
    EXPECT_EQ(answers, QList{true});
    EXPECT_EQ(access.microphoneRequestCount(), 0);
    EXPECT_EQ(desktop->actions(), QStringList());
}

TEST_F(PermissionServiceTest, AnUndecidedUserIsAskedOnceWithTheProgramInFront)
{
    access.setMicrophoneState(State::notDetermined);
    desktop->setRunning({ownApplication()});
    int requestsBefore = -1;
    desktop->setHook([&](const QString &) { requestsBefore = access.microphoneRequestCount(); });
    request();
    EXPECT_EQ(desktop->actions(), QStringList{activation});
    EXPECT_EQ(requestsBefore, 0) << "the program is in front before the question appears";
    EXPECT_EQ(access.microphoneRequestCount(), 1);
}

TEST_F(PermissionServiceTest, TheResultIsTheUsersAnswerAndNothingElseIsDone)
{
    for (const bool answer : {true, false}) {
        access.setMicrophoneState(State::notDetermined);
        answers = {};
        request();
        EXPECT_EQ(answers, QList<bool>()) << "the user has not answered yet";
        access.answerMicrophoneRequests(answer);
        EXPECT_EQ(answers, QList{answer});
    }
    EXPECT_EQ(desktop->actions(), QStringList());
}

TEST_F(PermissionServiceTest, AProgramThatTheDesktopDoesNotKnowAsksAllTheSame)
{
    access.setMicrophoneState(State::notDetermined);
    request();
    EXPECT_EQ(desktop->actions(), QStringList());
    EXPECT_EQ(access.microphoneRequestCount(), 1);
}

TEST_F(PermissionServiceTest, AfterARefusalTheFirstSettingsPageThatOpensIsShownAndNobodyIsAsked)
{
    access.setMicrophoneSettingsPages({QUrl(u"page:first"_s), QUrl(u"http://[bad"_s),
                                       QUrl(u"page:second"_s), QUrl(u"page:third"_s)});
    desktop->setRefusedAddresses({u"page:first"_s});
    for (const State state : {State::denied, State::restricted, State::unknown}) {
        const qsizetype before = desktop->actions().size();
        access.setMicrophoneState(state);
        answers = {};
        request();
        EXPECT_EQ(answers, QList{false});
        EXPECT_EQ(desktop->actions().mid(before),
                  QStringList({u"address page:first"_s, u"address page:second"_s}));
    }
    EXPECT_EQ(access.microphoneRequestCount(), 0);
}

TEST_F(PermissionServiceTest, WithoutASettingsPageThatOpensARefusalIsAllThereIs)
{
    access.setMicrophoneState(State::denied);
    request();
    EXPECT_EQ(answers, QList{false});
    EXPECT_EQ(desktop->actions(), QStringList());

    access.setMicrophoneSettingsPages({QUrl(u"page:only"_s)});
    desktop->setRefusedAddresses({u"page:only"_s});
    request();
    EXPECT_EQ(answers, QList({false, false}));
    EXPECT_EQ(desktop->actions(), QStringList{u"address page:only"_s});
}

TEST_F(PermissionServiceTest, EachCallReadsTheSystemAnew)
{
    access.setMicrophoneState(State::denied);
    request();
    access.setMicrophoneState(State::authorized);
    request();
    EXPECT_EQ(answers, QList({false, true}));
    EXPECT_TRUE(service.currentPermissions().microphoneAuthorized);
}

TEST_F(PermissionServiceTest, TheAccessibilityPromptIsTheSystems)
{
    access.setAccessibilityTrusted(false);
    service.promptForAccessibility();
    EXPECT_EQ(access.accessibilityPromptCount(), 1);
    EXPECT_FALSE(service.currentPermissions().accessibilityAuthorized);
}

} // namespace
} // namespace kestrova
