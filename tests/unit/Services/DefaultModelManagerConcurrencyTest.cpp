#include "Services/Model/DefaultModelManager.h"

#include "Models/KestrovaError.h"
#include "Services/LoopbackHttpServer.h"
#include "Services/ModelFolder.h"
#include "support/QtPrinting.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <latch>
#include <random>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Connection = LoopbackHttpServer::Connection;

/// The models differ in every byte and in length, so that no mixture passes for one of them.
const QByteArray firstModel = patternedBytes(150'000, 1);
const QByteArray secondModel = patternedBytes(230'000, 2);

bool isWholeModel(const QByteArray &bytes)
{
    return bytes == firstModel || bytes == secondModel;
}

TEST(DefaultModelManagerOverlapping, CallsForDifferentModelsInstallOnlyWhatTheyVerified)
{
    constexpr int rounds = 30;
    std::latch bothAreDownloading(2);
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        const QByteArray &body = request.path == u"/bad"_s ? secondModel : firstModel;
        connection.send(ServedFile{body}.answer(request, 1000));
        connection.send(body.mid(1000));
    });
    ModelFolder folder;
    const QString digest = QString::fromLatin1(
        QCryptographicHash::hash(firstModel, QCryptographicHash::Sha256).toHex());
    // Each thread has its own address; both share one manager and so one staging path.
    static thread_local bool isBad = false;
    DefaultModelManager manager(
        folder.directories,
        [&] {
            return ModelConfig{server.urlString(isBad ? u"/bad"_s : u"/good"_s), digest};
        },
        u"ggml-base.bin"_s);

    std::jthread bad([&] {
        isBad = true;
        bothAreDownloading.arrive_and_wait();
        for (int round = 0; round < rounds; ++round)
            EXPECT_THROW(manager.prepareModelIfNeeded(true, {}), KestrovaError);
    });
    bothAreDownloading.arrive_and_wait();
    for (int round = 0; round < rounds; ++round) {
        EXPECT_NO_THROW(manager.prepareModelIfNeeded(true, {}));
        EXPECT_EQ(readFile(folder.modelPath()), firstModel);
    }
}

/// The program beside this one that downloads the model over and over until it is killed.
class Installer
{
public:
    Installer(const QString &root, const QString &url)
    {
        std::array<int, 2> pipe = {};
        if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
        QByteArray program = KESTROVA_MODEL_INSTALLER;
        QByteArray rootBytes = root.toUtf8();
        QByteArray urlBytes = url.toUtf8();
        std::array<char *, 4> arguments = {program.data(), rootBytes.data(), urlBytes.data(),
                                           nullptr};
        if (posix_spawn(&m_process, program.constData(), &actions, nullptr, arguments.data(),
                        environ) != 0)
            m_process = -1;
        posix_spawn_file_actions_destroy(&actions);
        close(pipe[1]);
        m_output = pipe[0];
    }
    ~Installer()
    {
        if (m_process > 0)
            kill();
        close(m_output);
    }

    /// Whether it has installed a model for the first time.
    bool waitForFirstInstallation() const
    {
        char byte = 0;
        return m_process > 0 && read(m_output, &byte, 1) == 1;
    }
    /// Whether it was still running, and is dead now.
    bool kill()
    {
        int status = 0;
        const bool isReaped =
            ::kill(m_process, SIGKILL) == 0 && waitpid(m_process, &status, 0) == m_process;
        m_process = -1;
        return isReaped && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

private:
    pid_t m_process = -1;
    int m_output = -1;
};

TEST(DefaultModelManagerKilled, TheModelIsAlwaysAWholeOne)
{
    constexpr int kills = 60;
    std::atomic<int> requestCount = 0;
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        connection.send(
            ServedFile{requestCount++ % 2 == 0 ? firstModel : secondModel}.answer(request));
    });
    ModelFolder folder;
    std::mt19937 generator(20240301);
    std::uniform_int_distribution<int> microseconds(0, 20'000);
    int killsAmidWork = 0;
    for (int round = 0; round < kills; ++round) {
        Installer installer(folder.directories.applicationSupportDirectory(),
                            server.urlString(u"/"_s));
        ASSERT_TRUE(installer.waitForFirstInstallation());
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(generator)));
        ASSERT_TRUE(installer.kill());
        ASSERT_TRUE(isWholeModel(readFile(folder.modelPath()))) << "round " << round;
        killsAmidWork += folder.names().size() > 1;
    }
    RecordProperty("killsAmidWork", killsAmidWork);
    EXPECT_GT(killsAmidWork, 0) << "the moments say nothing";

    DefaultModelManager manager(
        folder.directories,
        [&] {
            return ModelConfig{server.urlString(u"/"_s), {}};
        },
        u"ggml-base.bin"_s);
    manager.prepareModelIfNeeded(true, {});
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
}

} // namespace
} // namespace kestrova
