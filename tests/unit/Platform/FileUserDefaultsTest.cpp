#include "Platform/Linux/FileUserDefaults.h"
#include "Models/ReadableError.h"
#include "support/QtPrinting.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>
#include <thread>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class FileUserDefaultsTest : public testing::Test
{
protected:
    QString path(const QString &name) const { return directory + u'/' + name; }

    QByteArray contents(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "(unreadable)";
    }

    QStringList files() const { return QDir(directory).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir root;
    const QString directory = root.filePath(u"config/kestrova"_s);
    FileUserDefaults defaults{directory};
    const QString key = u"kestrova.settings.v1"_s;
};

TEST_F(FileUserDefaultsTest, EachKeyIsOneFileThatOnlyTheUserMayRead)
{
    EXPECT_FALSE(defaults.data(key));
    defaults.setData(key, "one");
    defaults.setData(u"other"_s, "");
    EXPECT_EQ(defaults.data(key), QByteArray("one"));
    EXPECT_EQ(defaults.data(u"other"_s), QByteArray(""));
    EXPECT_EQ(files(), QStringList({u"kestrova.settings.v1.json"_s, u"other.json"_s}));

    struct stat status = {};
    ASSERT_EQ(stat(QFile::encodeName(path(files().first())).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & ALLPERMS, 0600U);
}

TEST_F(FileUserDefaultsTest, ReplacingKeepsTheFilePrivateAndLeavesNothingElse)
{
    defaults.setData(key, "one");
    QFile::setPermissions(path(files().first()), QFile::ReadOwner | QFile::ReadOther);
    defaults.setData(key, "two");
    EXPECT_EQ(defaults.data(key), QByteArray("two"));
    EXPECT_EQ(files().size(), 1);
    EXPECT_FALSE(QFile::permissions(path(files().first())) & QFile::ReadOther);
}

TEST_F(FileUserDefaultsTest, ALinkedDocumentIsReplacedWhereItReallyIs)
{
    const QString real = root.filePath(u"dotfiles.json"_s);
    QDir().mkpath(directory);
    QFile file(real);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    ASSERT_TRUE(QFile::link(real, path(key + u".json"_s)));
    defaults.setData(key, "new");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "new");
    EXPECT_TRUE(QFileInfo(path(key + u".json"_s)).isSymLink());
}

TEST_F(FileUserDefaultsTest, BytesSetAsideOutliveEveryLaterChange)
{
    defaults.setAside(key);
    EXPECT_FALSE(QDir(directory).exists()) << "there was nothing to keep";

    defaults.setData(key, "damaged");
    defaults.setAside(key);
    defaults.setAside(key);
    defaults.setData(key, "new");
    EXPECT_EQ(contents(u"kestrova.settings.v1.damaged-1.json"_s), "damaged");
    EXPECT_EQ(files().size(), 2) << "the same bytes are kept once";

    defaults.setData(key, "damaged again");
    defaults.setAside(key);
    defaults.setData(key, "newer");
    EXPECT_EQ(contents(u"kestrova.settings.v1.damaged-2.json"_s), "damaged again");
    EXPECT_EQ(contents(u"kestrova.settings.v1.damaged-1.json"_s), "damaged");
    EXPECT_EQ(defaults.data(key), QByteArray("newer"));
}

TEST_F(FileUserDefaultsTest, SomethingThatIsNoReadableFileIsAnError)
{
    QDir().mkpath(path(key + u".json"_s));
    EXPECT_THROW(defaults.data(key), PlatformError);
    EXPECT_THROW(defaults.setData(key, "x"), PlatformError);
}

TEST_F(FileUserDefaultsTest, AFolderThatCannotBeMadeIsAnError)
{
    QFile file(root.filePath(u"config"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_THROW(defaults.setData(key, "x"), PlatformError);
    EXPECT_FALSE(defaults.data(key));
}

// Runs the action in a child process, so that limits and signals touch nothing else.
template <typename Action>
pid_t inChild(Action action)
{
    const pid_t child = fork();
    if (child == 0) {
        action();
        _exit(0);
    }
    return child;
}

int exitStatusOf(pid_t child)
{
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(FileUserDefaultsTest, AFullDiskLeavesTheOldBytes)
{
    defaults.setData(key, "old");
    const pid_t child = inChild([this] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            defaults.setData(key, QByteArray(5000, 'x'));
        } catch (const PlatformError &) {
            _exit(42);
        }
    });
    EXPECT_EQ(exitStatusOf(child), 42);
    EXPECT_EQ(defaults.data(key), QByteArray("old"));
    EXPECT_EQ(files().size(), 1) << "no half-written file stays behind";
}

TEST_F(FileUserDefaultsTest, AWriterKilledAtAnyMomentLeavesAWholeDocument)
{
    const QByteArray a(200'000, 'a');
    const QByteArray b(300'000, 'b');
    defaults.setData(key, a);
    std::minstd_rand random(1);
    int completedRounds = 0;
    for (int round = 0; round < 60; ++round) {
        const pid_t child = inChild([&] {
            for (int i = 0;; ++i)
                defaults.setData(key, i % 2 == 0 ? b : a);
        });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
        kill(child, SIGKILL);
        EXPECT_EQ(exitStatusOf(child), -1);
        const auto stored = defaults.data(key);
        ASSERT_TRUE(stored == a || stored == b);
        completedRounds += stored == b;
    }
    EXPECT_GT(completedRounds, 0) << "the writer was never fast enough to be interrupted";
}

} // namespace
} // namespace kestrova
