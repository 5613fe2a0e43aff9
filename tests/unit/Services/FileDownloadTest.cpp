#include "Services/Model/FileDownload.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"
#include "Services/BusyListener.h"
#include "Services/FileSizeLimit.h"
#include "Services/LoopbackHttpServer.h"
#include "Services/TestFiles.h"
#include "support/QtPrinting.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <semaphore>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::IsEmpty;

using Connection = LoopbackHttpServer::Connection;

constexpr DownloadTimings quick = {
    .connectLimit = 30s, .stallLimit = 30s, .pauseBeforeResuming = 0ms, .progressInterval = 0ms};

class FileDownloadFromServer : public testing::Test
{
protected:
    QByteArray fetch(const QUrl &url, const std::stop_token &stop = {})
    {
        const auto file = download.fetch(url, destination, recordProgress, stop);
        file->moveTo(destination);
        return readFile(destination);
    }

    QString failureOf(const QUrl &url)
    {
        try {
            fetch(url);
        } catch (const PlatformError &error) {
            return error.errorDescription();
        }
        return u"no failure"_s;
    }

    QTemporaryDir folder;
    const QString destination = folder.filePath(u"m.bin"_s);
    const ServedFile file{patternedBytes(200'000)};
    FileDownload download{quick};
    std::vector<DownloadProgress> reports;
    const DownloadProgressSink recordProgress = [this](const DownloadProgress &progress) {
        reports.push_back(progress);
    };
};

TEST_F(FileDownloadFromServer, BringsTheBodyAndReportsHowFarItHasCome)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        connection.send(file.answer(request));
    });
    EXPECT_EQ(fetch(server.url(u"/m.bin"_s)), file.body);
    EXPECT_EQ(server.requests()[0].path, u"/m.bin"_s);
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end(), [](const auto &a, const auto &b) {
        return a.receivedBytes < b.receivedBytes;
    }));
    EXPECT_EQ(reports.back(), (DownloadProgress{file.body.size(), file.body.size()}));
}

TEST_F(FileDownloadFromServer, ReportsNoTotalWhenTheServerTellsNone)
{
    const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
        connection.send(responseHead("200 OK", {}) + "body");
    });
    EXPECT_EQ(fetch(server.url(u"/"_s)), "body");
    EXPECT_EQ(reports.back(), (DownloadProgress{4, std::nullopt}));
}

TEST_F(FileDownloadFromServer, TakesABodyInChunks)
{
    const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
        connection.send(responseHead("200 OK", {"Transfer-Encoding: chunked"}) +
                        "3\r\nabc\r\n4\r\ndefg\r\n0\r\n\r\n");
    });
    EXPECT_EQ(fetch(server.url(u"/"_s)), "abcdefg");
}

TEST_F(FileDownloadFromServer, TakesWhateverBodyArrivesWithWhateverStatus)
{
    for (const QByteArray status : {"404 Not Found", "500 Oops", "206 Partial Content"}) {
        const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
            connection.send(responseHead(status, {"Content-Length: 4"}) + "body");
        });
        EXPECT_EQ(fetch(server.url(u"/"_s)), "body") << status.constData();
    }
}

TEST_F(FileDownloadFromServer, AnEmptyBodyIsAnEmptyFile)
{
    const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
        connection.send(responseHead("204 No Content", {}));
    });
    EXPECT_EQ(fetch(server.url(u"/"_s)), "");
    EXPECT_TRUE(QFile::exists(destination));
}

TEST_F(FileDownloadFromServer, FollowsRedirectsWithoutKeepingTheirBodies)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        if (request.path == u"/m.bin"_s)
            connection.send(file.answer(request));
        else
            connection.send(responseHead("302 Found", {"Location: /m.bin", "Content-Length: 5"}) +
                            "moved");
    });
    EXPECT_EQ(fetch(server.url(u"/start"_s)), file.body);
}

TEST_F(FileDownloadFromServer, ARedirectToALocalFileIsRefused)
{
    ASSERT_TRUE(writeFile(folder.filePath(u"secret"_s), "secret"));
    const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
        connection.send(responseHead(
            "302 Found", {"Location: file://" + folder.filePath(u"secret"_s).toUtf8()}));
    });
    EXPECT_EQ(failureOf(server.url(u"/"_s)),
              u"Download failed: The server redirects to an address that is not secure."_s);
}

TEST_F(FileDownloadFromServer, ARedirectInACircleEnds)
{
    const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
        connection.send(responseHead("302 Found", {"Location: /"}));
    });
    EXPECT_EQ(failureOf(server.url(u"/"_s)),
              u"Download failed: Maximum (20) redirects followed."_s);
}

TEST_F(FileDownloadFromServer, CopiesALocalFile)
{
    const QString source = folder.filePath(u"source"_s);
    ASSERT_TRUE(writeFile(source, file.body));
    EXPECT_EQ(fetch(QUrl::fromLocalFile(source)), file.body);
    EXPECT_THAT(failureOf(QUrl::fromLocalFile(source + u"2"_s)).toStdString(),
                testing::HasSubstr("source2"));
}

TEST_F(FileDownloadFromServer, AnAddressWithoutASupportedSchemeIsAnError)
{
    for (const QString &address : {u"example.org/m.bin"_s, u"/m.bin"_s, u"ftp://127.0.0.1/m"_s})
        EXPECT_EQ(failureOf(QUrl(address)), u"Download failed: unsupported URL."_s);
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_F(FileDownloadFromServer, ARefusedConnectionIsAnError)
{
    QUrl url;
    {
        const LoopbackHttpServer server([](const HttpRequest &, Connection &) {});
        url = server.url(u"/"_s);
    }
    EXPECT_THAT(failureOf(url).toStdString(), testing::HasSubstr("Failed to connect to 127.0.0.1"));
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_F(FileDownloadFromServer, AConnectionThatIsNotMadeInTimeIsAnError)
{
    const BusyListener listener;
    DownloadTimings timings = quick;
    timings.connectLimit = 100ms;
    FileDownload impatient(timings);
    EXPECT_THROW(impatient.fetch(listener.url(), destination, {}, {}), PlatformError);
}

TEST_F(FileDownloadFromServer, AnAnswerThatStallsIsAnError)
{
    const LoopbackHttpServer server([](const HttpRequest &, Connection &connection) {
        connection.send(responseHead("200 OK", {"Content-Length: 10"}) + "abc");
        connection.waitForClose();
    });
    DownloadTimings timings = quick;
    timings.stallLimit = 200ms;
    FileDownload impatient(timings);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THROW(impatient.fetch(server.url(u"/"_s), destination, {}, {}), PlatformError);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 200ms);
    EXPECT_EQ(server.requests().size(), 1U);
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_F(FileDownloadFromServer, AFullDiskIsAnErrorThatNamesTheFile)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        connection.send(file.answer(request));
    });
    {
        const FileSizeLimit limit(100'000);
        EXPECT_EQ(failureOf(server.url(u"/"_s)), destination + u": File too large"_s);
    }
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

/// Requests stop from another thread, as the main thread does, once raise() was called.
class Stopper
{
public:
    void raise() { m_semaphore.release(); }
    std::stop_token token() const { return m_source.get_token(); }

private:
    std::stop_source m_source;
    std::counting_semaphore<> m_semaphore{0};
    std::jthread m_thread{[this] {
        m_semaphore.acquire();
        m_source.request_stop();
    }};
};

TEST_F(FileDownloadFromServer, StopsPromptlyWhileItConnects)
{
    const BusyListener listener;
    Stopper stopper;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THROW(download.fetch(
                     listener.url(), destination,
                     [&](const DownloadProgress &) { stopper.raise(); }, stopper.token()),
                 Cancelled);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

TEST_F(FileDownloadFromServer, StopsPromptlyWhileTheServerIsSilent)
{
    Stopper stopper;
    const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
        stopper.raise();
        connection.waitForClose();
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THROW(fetch(server.url(u"/"_s), stopper.token()), Cancelled);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
}

TEST_F(FileDownloadFromServer, StopsPromptlyBeforeItResumes)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        connection.send(file.answer(request, 1000));
    });
    DownloadTimings timings = quick;
    timings.pauseBeforeResuming = 30s;
    FileDownload patient(timings);
    Stopper stopper;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THROW(patient.fetch(
                     server.url(u"/"_s), destination,
                     [&](const DownloadProgress &) { stopper.raise(); }, stopper.token()),
                 Cancelled);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
}

} // namespace
} // namespace kestrova
