#include "Platform/Linux/X11/Windows/X11Workspace.h"

#include "Platform/Linux/Applications/ApplicationAddress.h"
#include "support/ApplicationObject.h"
#include "support/QtPrinting.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <sys/stat.h>

#include <cctype>
#include <csignal>
#include <string>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

// With the applications that are really installed, and the desktop's own home.
class X11LaunchingTest : public testing::TestWithParam<const char *>
{
protected:
    ~X11LaunchingTest() override
    {
        for (const qint32 process : m_launched)
            kill(process, SIGKILL);
    }

    bool comesToFront(const QString &identifier)
    {
        return waitUntil([&] {
            const auto front = workspace.frontmostApplication();
            if (!front || front->bundleIdentifier != identifier)
                return false;
            m_launched.append(front->processIdentifier);
            return true;
        });
    }

    // In the home of the virtual desktop.
    void installEntry(const QString &identifier, const QByteArray &keys)
    {
        ASSERT_TRUE(QDir().mkpath(folder));
        QFile entry(folder + identifier + u".desktop"_s);
        ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
        entry.write("[Desktop Entry]\nType=Application\nName=X\n" + keys);
    }

    const QString folder = qEnvironmentVariable("XDG_DATA_HOME") + u"/applications/"_s;
    ApplicationObject<QCoreApplication> application;
    QList<qint32> m_launched;
    X11Connection connection;
    DesktopEntries entries;
    X11Windows windows{connection, entries};
    X11Workspace workspace{connection, windows, entries};
};

TEST_P(X11LaunchingTest, AnInstalledApplicationOpensInFrontAndIsRecognised)
{
    const QString identifier = QString::fromLatin1(GetParam());
    ASSERT_TRUE(workspace.isInstalled(identifier));
    EXPECT_TRUE(workspace.runningApplications(identifier).isEmpty());
    workspace.openApplication(identifier);
    ASSERT_TRUE(comesToFront(identifier));
    const auto instances = workspace.runningApplications(identifier);
    ASSERT_EQ(instances.size(), 1);
    EXPECT_TRUE(instances.first().isActive);
    EXPECT_TRUE(instances.first().isInTaskBar);
}

INSTANTIATE_TEST_SUITE_P(Applications, X11LaunchingTest,
                         testing::Values("debian-xterm", "org.xfce.mousepad", "xfce4-terminal"),
                         [](const auto &parameter) {
                             std::string name = parameter.param;
                             std::erase_if(name, [](char c) { return !std::isalnum(c); });
                             return name;
                         });

TEST_F(X11LaunchingTest, AnApplicationIsStartingUntilItShowsAWindow)
{
    // It waits for somebody to write into this pipe.
    const QByteArray gate = QFile::encodeName(folder) + "gate";
    installEntry(u"org.example.slow"_s,
                 "Exec=sh -c \"read go < " + gate + "; exec xterm -e cat\"\n");
    ASSERT_EQ(mkfifo(gate.constData(), 0600), 0);
    const qint32 process = workspace.openApplication(u"org.example.slow"_s);
    ASSERT_GT(process, 0);
    EXPECT_TRUE(workspace.isStarting(process));
    {
        QFile writer(QFile::decodeName(gate));
        ASSERT_TRUE(writer.open(QIODevice::WriteOnly));
        writer.write("go\n");
    }
    ASSERT_TRUE(comesToFront(u"debian-xterm"_s));
    EXPECT_EQ(workspace.frontmostApplication()->processIdentifier, process);
    EXPECT_FALSE(workspace.isStarting(process));
}

TEST_F(X11LaunchingTest, AnApplicationThatHasEndedIsNotStarting)
{
    installEntry(u"org.example.short"_s, "Exec=true\n");
    const qint32 process = workspace.openApplication(u"org.example.short"_s);
    ASSERT_GT(process, 0);
    EXPECT_TRUE(waitUntil([&] { return !workspace.isStarting(process); }));
    EXPECT_FALSE(workspace.isStarting(0));
}

TEST_F(X11LaunchingTest, AnApplicationThatIsNotInstalledOpensNothing)
{
    EXPECT_FALSE(workspace.isInstalled(u"org.example.Missing"_s));
    EXPECT_EQ(workspace.openApplication(u"org.example.Missing"_s), 0);
    EXPECT_FALSE(workspace.frontmostApplication());
}

TEST_F(X11LaunchingTest, AnAddressOpensWithTheHandlerOfItsScheme)
{
    const QUrl address(u"x-kestrova-test:page?a=%20b"_s);
    EXPECT_FALSE(workspace.openAddress(address));
    installEntry(u"x"_s, "Exec=xterm -T %u -e cat\nMimeType=x-scheme-handler/x-kestrova-test;\n");
    QFile defaults(folder + u"mimeapps.list"_s);
    ASSERT_TRUE(defaults.open(QIODevice::WriteOnly));
    defaults.write("[Default Applications]\nx-scheme-handler/x-kestrova-test=x.desktop\n");
    defaults.close();

    // GIO notices a little later what was installed.
    ASSERT_TRUE(waitUntil([&] { return workspace.openAddress(address); }));
    ASSERT_TRUE(comesToFront(u"debian-xterm"_s));
    EXPECT_EQ(windows.title(windows.active()->window), address.toString(QUrl::FullyEncoded));
}

TEST_F(X11LaunchingTest, AnApplicationsAddressOpensItThoughNoMenuShowsIt)
{
    const QUrl address = applicationAddress(u"org.example.panel"_s);
    EXPECT_FALSE(workspace.openAddress(address)) << "it is not installed";
    installEntry(u"org.example.panel"_s,
                 "NoDisplay=true\nOnlyShowIn=NOSUCHDESKTOP;\nExec=xterm -T panel -e cat\n");
    ASSERT_TRUE(workspace.openAddress(address));
    ASSERT_TRUE(comesToFront(u"debian-xterm"_s));
    EXPECT_EQ(windows.title(windows.active()->window), u"panel"_s);
}

TEST_F(X11LaunchingTest, AnApplicationsAddressThatWasRemovedOrLacksItsProgramOpensNothing)
{
    installEntry(u"org.example.removed"_s, "Hidden=true\nExec=xterm -e cat\n");
    installEntry(u"org.example.broken"_s, "Exec=/nonexistent/program\n");
    EXPECT_FALSE(workspace.openAddress(applicationAddress(u"org.example.removed"_s)));
    EXPECT_FALSE(workspace.openAddress(applicationAddress(u"org.example.broken"_s)));
}

} // namespace
} // namespace kestrova
