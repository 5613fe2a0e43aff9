#include "Platform/Linux/Applications/ProcessFamily.h"

#include "Platform/Linux/Applications/ProcessStatus.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

/// A process that waits until this object ends.
class Waiting
{
public:
    Waiting(const QString &program, const QStringList &arguments)
    {
        m_process.start(program, arguments);
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~Waiting()
    {
        m_process.closeWriteChannel();
        EXPECT_TRUE(m_process.waitForFinished());
    }
    Q_DISABLE_COPY_MOVE(Waiting)

    qint32 identifier() const { return static_cast<qint32>(m_process.processId()); }
    qint32 readNumber()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead()) {
        }
        return m_process.readLine().trimmed().toInt();
    }

private:
    QProcess m_process;
};

TEST(ProcessFamily, AProcessBelongsToItselfAndToThoseThatStartedIt)
{
    const QString shell = QFileInfo(u"/bin/sh"_s).canonicalFilePath();
    // The outer shell stays; the inner one tells its number and becomes another program.
    Waiting application(u"/bin/sh"_s, {u"-c"_s, u"sh -c 'echo $$; exec cat'; :"_s});
    const qint32 helper = application.readNumber();
    ASSERT_GT(helper, 0);
    ASSERT_TRUE(waitUntil([&] { return executablePath(helper) != shell; }));
    EXPECT_TRUE(isOfApplication(helper, helper));
    EXPECT_TRUE(isOfApplication(helper, application.identifier()));
    EXPECT_TRUE(isOfApplication(helper, getpid()));
    EXPECT_FALSE(isOfApplication(application.identifier(), helper)) << "who starts it is another";
}

TEST(ProcessFamily, ProcessesOfOneProgramBelongTogether)
{
    const Waiting one(u"/bin/cat"_s, {});
    const Waiting same(u"/bin/cat"_s, {});
    const Waiting other(u"/usr/bin/tee"_s, {});
    EXPECT_TRUE(isOfApplication(one.identifier(), same.identifier()));
    EXPECT_FALSE(isOfApplication(one.identifier(), other.identifier()));
}

TEST(ProcessFamily, WhatIsNotKnownBelongsToNothing)
{
    EXPECT_FALSE(isOfApplication(0, 0));
    EXPECT_FALSE(isOfApplication(getpid(), 0));
    EXPECT_FALSE(isOfApplication(0, getpid()));
}

} // namespace
} // namespace kestrova
