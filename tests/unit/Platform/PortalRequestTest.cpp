#include "Platform/Linux/Portal/PortalRequest.h"

#include "support/ApplicationObject.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Answer = PortalRequest::Answer;
using Outcome = PortalRequest::Outcome;

constexpr uint otherResponse = 2;

/// A portal on a connection of its own to the test's bus, whose user answers when the test says so.
class Portal final : public QDBusVirtualObject
{
public:
    Portal()
    {
        m_bus.registerVirtualObject(u"/org/freedesktop/portal/desktop"_s, this,
                                    QDBusConnection::SubPath);
        if (!m_bus.registerService(u"org.freedesktop.portal.Desktop"_s))
            throw std::runtime_error("the portal's name is not to be had");
    }
    ~Portal() override { QDBusConnection::disconnectFromBus(connectionName); }
    Q_DISABLE_COPY_MOVE(Portal)

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() == u"Close") {
            m_closed.append(message.path());
            return true;
        }
        if (message.member() == u"Last") {
            ++m_lastCalls;
            return true;
        }
        m_calls.append(message);
        if (m_answersBeforeReply)
            respond(0);
        bus.send(m_refuses ? message.createErrorReply(QDBusError::AccessDenied, u"no"_s)
                           : message.createReply(QVariant::fromValue(QDBusObjectPath(path()))));
        return true;
    }

    /// Of the object that answers the last call.
    QString path() const
    {
        if (!m_ownPath.isEmpty())
            return m_ownPath;
        const QString sender = m_calls.last().service().mid(1).replace(u'.', u'_');
        return u"/org/freedesktop/portal/desktop/request/"_s + sender + u'/' +
               options()[u"handle_token"_s].toString();
    }
    QVariantMap options() const
    {
        return qdbus_cast<QVariantMap>(m_calls.last().arguments().constLast());
    }
    const QList<QDBusMessage> &calls() const { return m_calls; }
    /// The paths of the requests that were closed.
    const QStringList &closed() const { return m_closed; }
    /// How often it was told that there is no more.
    int lastCalls() const { return m_lastCalls; }

    void respond(uint response, const QVariantMap &results = {})
    {
        auto signal =
            QDBusMessage::createSignal(path(), u"org.freedesktop.portal.Request"_s, u"Response"_s);
        signal << response << results;
        m_bus.send(signal);
    }
    void answerBeforeReply() { m_answersBeforeReply = true; }
    void refuse() { m_refuses = true; }
    /// As a portal before version 0.9 does.
    void choosePath(const QString &path) { m_ownPath = path; }

private:
    static inline const QString connectionName = u"portal"_s;

    QDBusConnection m_bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName);
    QList<QDBusMessage> m_calls;
    QStringList m_closed;
    int m_lastCalls = 0;
    QString m_ownPath;
    bool m_answersBeforeReply = false;
    bool m_refuses = false;
};

class PortalRequestTest : public testing::Test
{
protected:
    PortalRequest *ask(std::optional<std::chrono::milliseconds> limit = std::nullopt)
    {
        const PortalRequest::Call call{
            u"org.freedesktop.portal.Example"_s, u"Ask"_s, {7U, u"why"_s}, {{u"modal"_s, true}}};
        return new PortalRequest(
            call, [this](const Answer &answer) { answers.push_back(answer); }, &owner, limit);
    }
    /// Until the portal has been asked so many times.
    bool isAsked(qsizetype count = 1)
    {
        return waitUntil([&] { return portal->calls().size() == count; });
    }
    std::optional<Outcome> outcome()
    {
        EXPECT_TRUE(waitUntil([this] { return !answers.empty(); }));
        EXPECT_TRUE(waitUntil([this] { return owner.children().isEmpty(); })) << "it stays";
        return answers.size() == 1 ? std::optional(answers.front().outcome) : std::nullopt;
    }
    /// As soon as the portal has got this call, it has got all before it.
    void waitForPortal()
    {
        const int before = portal->lastCalls();
        QDBusConnection::sessionBus().send(QDBusMessage::createMethodCall(
            u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
            u"org.freedesktop.portal.Example"_s, u"Last"_s));
        EXPECT_TRUE(waitUntil([&] { return portal->lastCalls() > before; }));
    }

    ApplicationObject<QCoreApplication> application;
    std::unique_ptr<Portal> portal = std::make_unique<Portal>();
    QObject owner;
    std::vector<Answer> answers;
};

TEST_F(PortalRequestTest, TheMethodIsCalledWithItsArgumentsAndATokenAmongItsOptions)
{
    ask();
    ASSERT_TRUE(isAsked());
    const QDBusMessage call = portal->calls().first();
    EXPECT_EQ(call.interface(), u"org.freedesktop.portal.Example"_s);
    EXPECT_EQ(call.member(), u"Ask"_s);
    EXPECT_EQ(call.signature(), u"usa{sv}"_s);
    EXPECT_EQ(call.arguments().mid(0, 2), (QVariantList{7U, u"why"_s}));
    EXPECT_EQ(portal->options().value(u"modal"_s), true);
    const QString token = portal->options().value(u"handle_token"_s).toString();
    EXPECT_FALSE(token.isEmpty());
    ask();
    ASSERT_TRUE(isAsked(2));
    EXPECT_NE(portal->options().value(u"handle_token"_s).toString(), token);
}

TEST_F(PortalRequestTest, TheUsersConsentBringsTheResults)
{
    ask();
    ASSERT_TRUE(isAsked());
    QCoreApplication::processEvents();
    EXPECT_TRUE(answers.empty());
    portal->respond(0, {{u"granted"_s, u"much"_s}});
    EXPECT_EQ(outcome(), Outcome::granted);
    EXPECT_EQ(answers.front().results, (QVariantMap{{u"granted"_s, u"much"_s}}));
}

TEST_F(PortalRequestTest, ARefusalAndAnyOtherEndBringNothing)
{
    const std::pair<uint, Outcome> responses[] = {{1, Outcome::cancelled},
                                                  {otherResponse, Outcome::failed}};
    for (const auto &[response, expected] : responses) {
        answers.clear();
        ask();
        ASSERT_TRUE(isAsked(portal->calls().size() + 1));
        portal->respond(response, {{u"granted"_s, u"much"_s}});
        EXPECT_EQ(outcome(), expected);
        EXPECT_TRUE(answers.front().results.isEmpty());
    }
}

TEST_F(PortalRequestTest, AnAnswerThatComesBeforeTheReplyIsHeard)
{
    portal->answerBeforeReply();
    ask();
    EXPECT_TRUE(answers.empty()) << "it came too early";
    EXPECT_EQ(outcome(), Outcome::granted);
}

TEST_F(PortalRequestTest, AnOldPortalMayAnswerByAnObjectOfItsOwnChoice)
{
    portal->choosePath(u"/org/freedesktop/portal/desktop/request/old"_s);
    ask();
    ASSERT_TRUE(isAsked());
    // It is not known before the reply has come.
    EXPECT_TRUE(waitUntil([this] {
        portal->respond(0);
        return !answers.empty();
    }));
    EXPECT_EQ(outcome(), Outcome::granted);
}

TEST_F(PortalRequestTest, AnAnswerToAnotherRequestIsNone)
{
    ask();
    ASSERT_TRUE(isAsked());
    portal->choosePath(portal->path() + u"0"_s);
    portal->respond(0);
    waitForPortal();
    QCoreApplication::processEvents();
    EXPECT_TRUE(answers.empty());
}

TEST_F(PortalRequestTest, APortalThatRefusesOrIsMissingOrGoesAwayHasFailed)
{
    portal->refuse();
    ask();
    EXPECT_EQ(outcome(), Outcome::failed);

    answers.clear();
    portal.reset();
    ask();
    EXPECT_EQ(outcome(), Outcome::failed);

    answers.clear();
    portal = std::make_unique<Portal>();
    ask();
    ASSERT_TRUE(isAsked());
    portal.reset();
    EXPECT_EQ(outcome(), Outcome::failed);
}

TEST_F(PortalRequestTest, WhatIsNotAnsweredInTimeIsClosedAndHasFailed)
{
    ask(1ms);
    EXPECT_EQ(outcome(), Outcome::failed);
    ASSERT_TRUE(waitUntil([this] { return !portal->closed().isEmpty(); }));
    EXPECT_EQ(portal->closed(), QStringList{portal->path()});
    portal->respond(0);
    waitForPortal();
    QCoreApplication::processEvents();
    EXPECT_EQ(answers.size(), 1U) << "an answer after the end";
}

TEST_F(PortalRequestTest, ARequestThatNobodyWaitsForAnyMoreIsClosedAndNeverAnswered)
{
    std::unique_ptr<PortalRequest> request(ask());
    ASSERT_TRUE(isAsked());
    const QString path = portal->path();
    request.reset();
    waitForPortal();
    EXPECT_EQ(portal->closed(), QStringList{path});
    EXPECT_TRUE(answers.empty());
}

TEST_F(PortalRequestTest, AnAnsweredRequestIsNotClosed)
{
    ask();
    ASSERT_TRUE(isAsked());
    portal->respond(0);
    EXPECT_EQ(outcome(), Outcome::granted);
    waitForPortal();
    EXPECT_EQ(portal->closed(), QStringList());
}

TEST_F(PortalRequestTest, TheCompletionMayDeleteTheOwner)
{
    auto shortLived = std::make_unique<QObject>();
    bool isAnswered = false;
    new PortalRequest(
        {u"org.freedesktop.portal.Example"_s, u"Ask"_s, {}, {}},
        [&](const Answer &) {
            shortLived.reset();
            isAnswered = true;
        },
        shortLived.get());
    ASSERT_TRUE(isAsked());
    portal->respond(0);
    EXPECT_TRUE(waitUntil([&] { return isAnswered; }));
    waitForPortal();
    EXPECT_EQ(portal->closed(), QStringList());
}

} // namespace
} // namespace kestrova
