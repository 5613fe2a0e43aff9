#include "Platform/Linux/Applications/ApplicationLauncher.h"

#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class ApplicationLauncherTest : public testing::Test
{
protected:
    // An application that runs a shell script.
    QString application(const QByteArray &script)
    {
        write(u"script"_s,
              script + "\nmv " + path(u"report"_s) + ".new " + path(u"report"_s) + '\n');
        write(u"x.desktop"_s, "[Desktop Entry]\nType=Application\nName=X\nExec=/bin/sh " +
                                  path(u"script"_s) + " %u\n");
        return m_folder.filePath(u"x.desktop"_s);
    }

    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QByteArray path(const QString &name) const
    {
        return QFile::encodeName(m_folder.filePath(name));
    }

    // What the script wrote.
    QStringList report()
    {
        QFile file(m_folder.filePath(u"report"_s));
        if (!waitUntil([&] { return file.exists(); }) || !file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).trimmed().split(u'\n');
    }

    QByteArray newReport() const { return " > " + path(u"report"_s) + ".new"; }

    QTemporaryDir m_folder;
};

TEST_F(ApplicationLauncherTest, TheProgramIsToldTheStartupId)
{
    const QString entry = application("echo $DESKTOP_STARTUP_ID" + newReport());
    ASSERT_TRUE(launchApplication(entry, "some-id_TIME1"));
    EXPECT_EQ(report(), QStringList{u"some-id_TIME1"_s});
}

TEST_F(ApplicationLauncherTest, TheProgramDoesNotGetPrivateVariables)
{
    setPrivateVariable("KESTROVA_TEST_VARIABLE", "ours");
    const QByteArray script = "echo \"[$KESTROVA_TEST_VARIABLE]\"" + newReport();
    ASSERT_TRUE(launchApplication(application(script), "id"));
    EXPECT_EQ(report(), QStringList{u"[]"_s});

    ASSERT_TRUE(QFile::remove(m_folder.filePath(u"report"_s)));
    const auto child = launchProgram({u"/bin/sh"_s, m_folder.filePath(u"script"_s)}, "id");
    ASSERT_TRUE(child);
    EXPECT_EQ(report(), QStringList{u"[]"_s});
    waitpid(*child, nullptr, 0);
    EXPECT_EQ(qgetenv("KESTROVA_TEST_VARIABLE"), "ours");
}

TEST_F(ApplicationLauncherTest, TheProgramInheritsNoFileAndNoOutput)
{
    const int inheritable = open("/dev/zero", O_RDONLY);
    ASSERT_GE(inheritable, 3);
    const QString entry = application("for n in /proc/$$/fd/*; do readlink $n; done" + newReport());
    ASSERT_TRUE(launchApplication(entry, "id"));
    close(inheritable);
    // The rest is the shell's own: the report and its script.
    const QStringList files = report();
    EXPECT_EQ(files.filter(u"/dev/zero"_s), QStringList());
    EXPECT_EQ(files.filter(u"pipe:"_s), QStringList());
    EXPECT_EQ(files.filter(u"socket:"_s), QStringList());
    EXPECT_EQ(files.first(), u"/dev/null"_s);
}

TEST_F(ApplicationLauncherTest, TheProgramHasASessionOfItsOwnAndIsNotOurChild)
{
    const QString entry = application("cut -d' ' -f4,6 /proc/$$/stat" + newReport());
    ASSERT_TRUE(launchApplication(entry, "id"));
    const QStringList numbers = report().first().split(u' ');
    ASSERT_EQ(numbers.size(), 2);
    EXPECT_NE(numbers[0].toInt(), getpid());
    EXPECT_NE(numbers[1].toInt(), getsid(0));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD); // no child is left, not even an ended one
}

TEST_F(ApplicationLauncherTest, TheProgramIgnoresNoBrokenPipe)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    const QString entry = application("grep ^SigIgn: /proc/self/status | cut -f2" + newReport());
    ASSERT_TRUE(launchApplication(entry, "id"));
    std::signal(SIGPIPE, before);
    EXPECT_EQ(report().first().toULongLong(nullptr, 16) & (1ULL << (SIGPIPE - 1)), 0U);
}

TEST_F(ApplicationLauncherTest, WhatCannotBeStartedIsReported)
{
    write(u"gone.desktop"_s,
          "[Desktop Entry]\nType=Application\nName=X\nExec=/nonexistent/program\n");
    EXPECT_FALSE(launchApplication(m_folder.filePath(u"gone.desktop"_s), "id"));
    EXPECT_FALSE(launchApplication(m_folder.filePath(u"missing.desktop"_s), "id"));
    EXPECT_FALSE(launchApplication(QString(), "id"));
}

TEST_F(ApplicationLauncherTest, AnAddressThatNobodyHandlesIsRefused)
{
    for (const char *address : {"x-kestrova-nobody:page?item", "relative/path", "", "http://[bad"})
        EXPECT_FALSE(launchHandler(QUrl(QString::fromLatin1(address)), "id")) << address;
}

TEST_F(ApplicationLauncherTest, AStartupIdIsUniqueAndEndsInItsTime)
{
    const QByteArray first = startupId(4000000000U);
    EXPECT_NE(first, startupId(4000000000U));
    EXPECT_TRUE(first.endsWith("_TIME4000000000")) << first.constData();
}

} // namespace
} // namespace kestrova
