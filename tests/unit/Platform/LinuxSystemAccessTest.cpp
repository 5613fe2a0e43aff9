#include "Platform/Linux/Sandbox/LinuxSystemAccess.h"

#include "support/ApplicationObject.h"
#include "support/BusService.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using State = MicrophoneAuthorizationState;

const Sandbox flatpak{Sandbox::Kind::flatpak, u"org.example.Dictation"_s};
const Sandbox snap{Sandbox::Kind::snap, u"dictation"_s};

// Knows what one application may do with the microphone.
class PermissionStore
{
public:
    enum class Trouble { none, noRecord, hidden, hangs };

    explicit PermissionStore(const char *permission, Trouble trouble = Trouble::none)
        : m_permission(permission), m_trouble(trouble)
    {
    }

    int lookupCount() const { return m_lookupCount; }
    void announce(const char *table, const char *id)
    {
        m_service.emitSignal(
            "/org/freedesktop/impl/portal/PermissionStore",
            "org.freedesktop.impl.portal.PermissionStore", "Changed",
            g_variant_new_parsed("(%s, %s, false, <byte 0>, @a{sas} {})", table, id));
    }

private:
    void takeCall(const BusService::Call &call)
    {
        ++m_lookupCount;
        const char *table = nullptr;
        const char *id = nullptr;
        g_variant_get(call.arguments, "(&s&s)", &table, &id);
        if (m_trouble == Trouble::hangs)
            call.ignore();
        else if (m_trouble == Trouble::hidden)
            call.refuse("org.freedesktop.DBus.Error.AccessDenied");
        else if (m_trouble == Trouble::noRecord || std::string(table) != "devices" ||
                 std::string(id) != "microphone")
            call.refuse("org.freedesktop.portal.Error.NotFound");
        else
            call.answer(g_variant_new_parsed("({'org.example.Other': ['no'],"
                                             "  'org.example.Dictation': [%s]}, <byte 0>)",
                                             m_permission));
    }

    const char *const m_permission;
    const Trouble m_trouble;
    std::atomic<int> m_lookupCount = 0;
    BusService m_service{"org.freedesktop.impl.portal.PermissionStore",
                         "/org/freedesktop/impl/portal/PermissionStore",
                         "<node><interface name='org.freedesktop.impl.portal.PermissionStore'>"
                         "<method name='Lookup'><arg type='s' direction='in'/>"
                         "<arg type='s' direction='in'/><arg type='a{sas}' direction='out'/>"
                         "<arg type='v' direction='out'/></method></interface></node>",
                         [this](BusService &, const BusService::Call &call) { takeCall(call); }};
};

// Asks the user, who answers at once, if at all.
class Portal
{
public:
    enum class Answer : guint32 { grant = 0, refusal = 1, none, error };

    explicit Portal(Answer answer) : m_answer(answer) {}

    int requestCount() const { return m_requestCount; }
    // Of the last request; empty when its arguments were not the expected ones.
    bool wasForOurMicrophone() const { return m_wasForOurMicrophone; }

private:
    void takeCall(BusService &service, const BusService::Call &call)
    {
        ++m_requestCount;
        guint32 process = 0;
        const char **devices = nullptr;
        GVariant *options = nullptr;
        g_variant_get(call.arguments, "(u^a&s@a{sv})", &process, &devices, &options);
        const char *token = "";
        g_variant_lookup(options, "handle_token", "&s", &token);
        m_wasForOurMicrophone = process == guint32(QCoreApplication::applicationPid()) &&
                                g_strv_length(const_cast<char **>(devices)) == 1 &&
                                std::string(devices[0]) == "microphone";
        std::string sender = call.sender.substr(1);
        std::ranges::replace(sender, '.', '_');
        const std::string path = "/org/freedesktop/portal/desktop/request/" + sender + '/' + token;
        g_free(devices);
        g_variant_unref(options);
        respond(service, call, path.c_str());
    }

    void respond(BusService &service, const BusService::Call &call, const char *path)
    {
        if (m_answer == Answer::error) {
            call.refuse("org.freedesktop.portal.Error.NotAllowed");
            return;
        }
        // The signal comes first, as it may: a listener that waits for the reply misses it.
        if (m_answer != Answer::none)
            service.emitSignal(path, "org.freedesktop.portal.Request", "Response",
                               g_variant_new("(ua{sv})", guint32(m_answer), nullptr));
        call.answer(g_variant_new("(o)", path));
    }

    const Answer m_answer;
    std::atomic<int> m_requestCount = 0;
    std::atomic<bool> m_wasForOurMicrophone = false;
    BusService m_service{
        "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "<node><interface name='org.freedesktop.portal.Device'><method name='AccessDevice'>"
        "<arg type='u' direction='in'/><arg type='as' direction='in'/>"
        "<arg type='a{sv}' direction='in'/><arg type='o' direction='out'/>"
        "</method></interface></node>",
        [this](BusService &service, const BusService::Call &call) { takeCall(service, call); }};
};

class LinuxSystemAccessTest : public testing::Test
{
protected:
    LinuxSystemAccess access(const std::optional<Sandbox> &sandbox)
    {
        return {sandbox, {}, [] { return Access::denied; }};
    }

    // What the request came to; it is not allowed to come before the call has returned.
    std::optional<bool> request(LinuxSystemAccess &access)
    {
        std::optional<bool> answer;
        access.requestMicrophone([&](bool isGranted) { answer = isGranted; });
        EXPECT_FALSE(answer) << "the answer came too early";
        EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }));
        return answer;
    }

    ApplicationObject<QCoreApplication> application;
};

TEST_F(LinuxSystemAccessTest, OutsideASandboxTheMicrophoneIsFreeAndNobodyIsAsked)
{
    const PermissionStore store("no");
    const Portal portal(Portal::Answer::refusal);
    LinuxSystemAccess free = access(std::nullopt);
    EXPECT_EQ(free.microphoneState(), State::authorized);
    EXPECT_EQ(request(free), true);
    EXPECT_EQ(store.lookupCount(), 0);
    EXPECT_EQ(portal.requestCount(), 0);
    EXPECT_EQ(free.microphoneAdvice(State::denied), std::nullopt);
}

TEST_F(LinuxSystemAccessTest, InAFlatpakTheUsersDecisionHolds)
{
    const std::pair<const char *, State> decisions[] = {
        {"yes", State::authorized}, {"no", State::denied}, {"ask", State::notDetermined}};
    for (const auto &[permission, state] : decisions) {
        const PermissionStore store(permission);
        EXPECT_EQ(access(flatpak).microphoneState(), state) << permission;
        EXPECT_EQ(store.lookupCount(), 1);
    }
}

TEST_F(LinuxSystemAccessTest, InAFlatpakWithoutADecisionTheSandboxsOwnPermissionsCount)
{
    EXPECT_EQ(access(flatpak).microphoneState(), State::authorized) << "no store";
    {
        const PermissionStore store("no", PermissionStore::Trouble::noRecord);
        EXPECT_EQ(access(flatpak).microphoneState(), State::authorized);
    }
    {
        const PermissionStore store("no", PermissionStore::Trouble::hidden);
        EXPECT_EQ(access(flatpak).microphoneState(), State::authorized);
    }
    const PermissionStore store("no");
    const Sandbox other{Sandbox::Kind::flatpak, u"org.example.Undecided"_s};
    EXPECT_EQ(access(other).microphoneState(), State::authorized) << "decided about others only";
    const Sandbox silent{Sandbox::Kind::flatpak, u"org.example.Undecided"_s, false};
    EXPECT_EQ(access(silent).microphoneState(), State::denied);
}

TEST_F(LinuxSystemAccessTest, AStoreThatDoesNotAnswerIsNotWaitedForLong)
{
    const PermissionStore store("yes", PermissionStore::Trouble::hangs);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(access(flatpak).microphoneState(), State::unknown);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20 * LinuxSystemAccess::answerLimit);
    EXPECT_EQ(store.lookupCount(), 1);
}

TEST_F(LinuxSystemAccessTest, AFlatpaksRequestIsForThisProcesssMicrophoneAndBringsTheUsersAnswer)
{
    {
        const Portal portal(Portal::Answer::grant);
        LinuxSystemAccess asking = access(flatpak);
        EXPECT_EQ(request(asking), true);
        EXPECT_EQ(portal.requestCount(), 1);
        EXPECT_TRUE(portal.wasForOurMicrophone());
    }
    const Portal portal(Portal::Answer::refusal);
    LinuxSystemAccess asking = access(flatpak);
    EXPECT_EQ(request(asking), false);
}

TEST_F(LinuxSystemAccessTest, AGrantHoldsWhereTheDesktopIsToldToAskEveryTime)
{
    const PermissionStore store("ask");
    const Portal portal(Portal::Answer::grant);
    LinuxSystemAccess asking = access(flatpak);
    ASSERT_EQ(asking.microphoneState(), State::notDetermined);
    ASSERT_EQ(request(asking), true);
    EXPECT_EQ(asking.microphoneState(), State::authorized);
    EXPECT_EQ(access(flatpak).microphoneState(), State::notDetermined) << "in the next run";
}

TEST_F(LinuxSystemAccessTest, APortalThatDoesNotAskIsARefusal)
{
    LinuxSystemAccess asking = access(flatpak);
    EXPECT_EQ(request(asking), false) << "no portal";
    const Portal portal(Portal::Answer::error);
    EXPECT_EQ(request(asking), false);
    EXPECT_EQ(portal.requestCount(), 1);
}

TEST_F(LinuxSystemAccessTest, APortalThatGoesAwayIsARefusal)
{
    auto portal = std::make_unique<Portal>(Portal::Answer::none);
    LinuxSystemAccess asking = access(flatpak);
    QList<bool> answers;
    asking.requestMicrophone([&](bool isGranted) { answers.append(isGranted); });
    ASSERT_TRUE(waitUntil([&] { return portal->requestCount() == 1; }));
    EXPECT_TRUE(answers.isEmpty());
    portal.reset();
    ASSERT_TRUE(waitUntil([&] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QList{false});
}

TEST_F(LinuxSystemAccessTest, ARequestThatIsNotAnsweredAnyMoreIsForgotten)
{
    auto portal = std::make_unique<Portal>(Portal::Answer::none);
    int answerCount = 0;
    {
        LinuxSystemAccess gone = access(flatpak);
        gone.requestMicrophone([&](bool) { ++answerCount; });
        ASSERT_TRUE(waitUntil([&] { return portal->requestCount() == 1; }));
    }
    LinuxSystemAccess asking = access(flatpak);
    bool isAnswered = false;
    asking.requestMicrophone([&](bool) { isAnswered = true; });
    ASSERT_TRUE(waitUntil([&] { return portal->requestCount() == 2; }));
    portal.reset();
    ASSERT_TRUE(waitUntil([&] { return isAnswered; }));
    EXPECT_EQ(answerCount, 0);
}

TEST_F(LinuxSystemAccessTest, InASnapItsPlugDecides)
{
    const QTemporaryDir folder;
    const QByteArray before = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(folder.path()) + ':' + before);
    LinuxSystemAccess snapped = access(snap);
    EXPECT_EQ(snapped.microphoneState(), State::unknown) << "no snapctl";

    const auto install = [&](const QByteArray &script) {
        QFile program(folder.filePath(u"snapctl"_s));
        ASSERT_TRUE(program.open(QIODevice::WriteOnly | QIODevice::Truncate));
        program.write("#!/bin/sh\n" + script);
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    };
    install("test \"$*\" = 'is-connected audio-record'");
    EXPECT_EQ(snapped.microphoneState(), State::authorized);
    EXPECT_EQ(request(snapped), true);
    install("exit 1");
    EXPECT_EQ(snapped.microphoneState(), State::denied);
    EXPECT_EQ(request(snapped), false);
    install("exec sleep 60");
    EXPECT_EQ(snapped.microphoneState(), State::unknown);
    qputenv("PATH", before);
}

TEST_F(LinuxSystemAccessTest, WhetherTheKeyboardIsOpenIsAskedEachTime)
{
    Access keyboard = Access::unavailable;
    LinuxSystemAccess access(std::nullopt, {}, [&] { return keyboard; });
    EXPECT_EQ(access.accessibility(), Access::unavailable);
    keyboard = Access::granted;
    EXPECT_EQ(access.accessibility(), Access::granted);
}

TEST_F(LinuxSystemAccessTest, AFlatpakHearsWhenItsUserDecidesOtherwise)
{
    PermissionStore store("yes");
    LinuxSystemAccess access(flatpak, {}, [] { return Access::granted; });
    int changes = 0;
    access.observe([&] { ++changes; });
    store.announce("devices", "camera");
    store.announce("devices", "microphone");
    EXPECT_TRUE(waitUntil([&] { return changes > 0; }));
    EXPECT_EQ(changes, 1) << "the camera is not our concern";
    access.observe({});
    store.announce("devices", "microphone");
    // Answered after the signal was sent, on the same connection.
    EXPECT_EQ(access.microphoneState(), State::authorized);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace kestrova
