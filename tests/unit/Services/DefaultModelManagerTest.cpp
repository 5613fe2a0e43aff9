#include "Services/Model/DefaultModelManager.h"

#include "Concurrency/Cancelled.h"
#include "Models/KestrovaError.h"
#include "Services/FileSizeLimit.h"
#include "Services/LoopbackHttpServer.h"
#include "Services/ModelFolder.h"
#include "Services/TestFiles.h"
#include "support/QtPrinting.h"
#include "support/Umask.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <optional>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using testing::IsEmpty;

using Connection = LoopbackHttpServer::Connection;

QString digestOf(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

class DefaultModelManagerWithServer : public testing::Test
{
protected:
    QUrl prepare(bool forceDownload = false, const std::stop_token &stop = {})
    {
        return manager.prepareModelIfNeeded(forceDownload, stop);
    }

    /// The description of the error that prepare() throws; any other passes through.
    template <typename Error = PlatformError>
    QString failure(bool forceDownload = false)
    {
        try {
            prepare(forceDownload);
        } catch (const Error &error) {
            return error.errorDescription();
        }
        return u"no failure"_s;
    }

    std::size_t requestCount() const { return server.requests().size(); }

    const QByteArray body = patternedBytes(100'000);
    const LoopbackHttpServer server{[this](const HttpRequest &request, Connection &connection) {
        if (request.path == u"/missing"_s)
            connection.send(responseHead("404 Not Found", {"Content-Length: 9"}) + "not found");
        else
            connection.send(ServedFile{body}.answer(request));
    }};
    ModelFolder folder;
    ModelConfig config = {server.urlString(u"/m.bin"_s), {}};
    DefaultModelManager manager{folder.directories, [this] { return config; }, u"ggml-base.bin"_s};
};

TEST_F(DefaultModelManagerWithServer, DownloadsAMissingModelWithoutADigest)
{
    EXPECT_EQ(prepare(), QUrl::fromLocalFile(folder.modelPath()));
    EXPECT_EQ(readFile(folder.modelPath()), body);
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
}

TEST_F(DefaultModelManagerWithServer, TrustsAPresentModelWithoutADigest)
{
    ASSERT_TRUE(folder.putModel("anything"));
    EXPECT_EQ(prepare(), QUrl::fromLocalFile(folder.modelPath()));
    EXPECT_EQ(readFile(folder.modelPath()), "anything");
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(DefaultModelManagerWithServer, BlanksAloneAreNoDigest)
{
    ASSERT_TRUE(folder.putModel("anything"));
    config.expectedSHA256 = u" \t\n"_s;
    prepare();
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(DefaultModelManagerWithServer, ComparesTheDigestTrimmedAndInLowerCase)
{
    ASSERT_TRUE(folder.putModel("present"));
    config.expectedSHA256 = u"  "_s + digestOf("present").toUpper() + u" \n"_s;
    EXPECT_EQ(prepare(), QUrl::fromLocalFile(folder.modelPath()));
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(DefaultModelManagerWithServer, APresentModelWithAnotherDigestIsReplaced)
{
    ASSERT_TRUE(folder.putModel("damaged"));
    config.expectedSHA256 = digestOf(body);
    prepare();
    EXPECT_EQ(readFile(folder.modelPath()), body);
    EXPECT_EQ(requestCount(), 1U);
}

TEST_F(DefaultModelManagerWithServer, AForcedDownloadReplacesAValidModel)
{
    const QByteArray present = patternedBytes(300'000, 9);
    ASSERT_TRUE(folder.putModel(present));
    config.expectedSHA256 = digestOf(body).toUpper();
    prepare(true);
    EXPECT_EQ(readFile(folder.modelPath()), body);
    prepare(true);
    EXPECT_EQ(requestCount(), 2U);
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
}

TEST_F(DefaultModelManagerWithServer, AWrongDigestLeavesTheDownloadBesideTheUntouchedModel)
{
    ASSERT_TRUE(folder.putModel("old"));
    config.expectedSHA256 = u" "_s + digestOf("something else").toUpper() + u" "_s;
    EXPECT_EQ(failure<KestrovaError>(true), u"Model checksum mismatch. Expected "_s +
                                                digestOf("something else").toUpper() + u", got "_s +
                                                digestOf(body) + u"."_s);
    EXPECT_EQ(readFile(folder.modelPath()), "old");
    EXPECT_EQ(readFile(folder.stagingPath()), body);
    EXPECT_EQ(folder.names().size(), 2);

    config.expectedSHA256 = digestOf(body);
    prepare(true);
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
}

TEST_F(DefaultModelManagerWithServer, AnErrorPageIsTheModelWhenNoDigestIsSet)
{
    config.downloadURLString = server.urlString(u"/missing"_s);
    prepare();
    EXPECT_EQ(readFile(folder.modelPath()), "not found");
}

TEST_F(DefaultModelManagerWithServer, AStringThatIsNoURLIsAConfigurationError)
{
    ASSERT_TRUE(folder.putModel("old"));
    for (const QString &string :
         {u""_s, u" "_s, u"not a url"_s, u" https://example.org/m.bin"_s,
          u"https://example.org/m.bin\n"_s, u"http://[::1"_s, u"http://example.org:99999/"_s}) {
        config.downloadURLString = string;
        EXPECT_EQ(failure<KestrovaError>(), u"Model download URL is not configured."_s)
            << string.toStdString();
    }
    EXPECT_EQ(readFile(folder.modelPath()), "old");
}

TEST_F(DefaultModelManagerWithServer, TheURLIsCheckedBeforeAnythingIsCreated)
{
    config.downloadURLString = u""_s;
    EXPECT_THROW(prepare(), KestrovaError);
    EXPECT_THAT(namesIn(folder.directories.applicationSupportDirectory()), IsEmpty());
}

TEST_F(DefaultModelManagerWithServer, AURLWithoutASchemeFailsInTheTransport)
{
    config.downloadURLString = u"example.org/ggml-base.bin"_s;
    EXPECT_EQ(failure(), u"Download failed: unsupported URL."_s);
}

TEST_F(DefaultModelManagerWithServer, ADirectoryThatCannotBeCreatedIsAnError)
{
    ASSERT_TRUE(
        writeFile(folder.directories.applicationSupportDirectory() + u"/Kestrova"_s, "in the way"));
    EXPECT_EQ(failure(),
              folder.directories.applicationSupportDirectory() + u"/Kestrova: Not a directory"_s);
}

TEST_F(DefaultModelManagerWithServer, AModelThatCannotBeReadForItsDigestIsAnError)
{
    ASSERT_TRUE(QDir().mkpath(folder.modelPath()));
    config.expectedSHA256 = digestOf(body);
    EXPECT_THAT(failure().toStdString(), testing::HasSubstr("ggml-base.bin: "));
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(DefaultModelManagerWithServer, AModelPathThatCannotBeReplacedIsAnError)
{
    ASSERT_TRUE(QDir().mkpath(folder.modelPath() + u"/in the way"_s));
    EXPECT_EQ(failure(true), folder.modelPath() + u": Is a directory"_s);
}

TEST_F(DefaultModelManagerWithServer, AnOldStagingFileIsReplaced)
{
    ASSERT_TRUE(folder.putModel("old"));
    ASSERT_TRUE(writeFile(folder.stagingPath(), "left behind"));
    prepare(true);
    EXPECT_EQ(readFile(folder.modelPath()), body);
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
}

TEST_F(DefaultModelManagerWithServer, AnOldStagingFileGivesItsSpaceBackBeforeTheDownload)
{
    ASSERT_TRUE(folder.putModel("old"));
    ASSERT_TRUE(writeFile(folder.stagingPath(), "left behind"));
    std::optional<bool> isThere;
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        isThere = QFileInfo::exists(folder.stagingPath());
        connection.send(ServedFile{body}.answer(request));
    });
    config.downloadURLString = server.urlString(u"/"_s);
    prepare(true);
    EXPECT_EQ(isThere, false);
}

TEST_F(DefaultModelManagerWithServer, ADownloadWhoseDigestWasInterruptedIsNotFetchedAgain)
{
    config.expectedSHA256 = digestOf(body);
    std::stop_source source;
    const auto stopAtTheEnd = [&](const DownloadProgress &progress) {
        if (progress.receivedBytes == body.size())
            source.request_stop();
    };
    // Progress is told at the beginning and at the end only.
    DefaultModelManager stopped(
        folder.directories, [this] { return config; }, u"ggml-base.bin"_s, stopAtTheEnd,
        DownloadTimings{.progressInterval = std::chrono::hours(1)});
    EXPECT_THROW(stopped.prepareModelIfNeeded(true, source.get_token()), Cancelled);
    EXPECT_FALSE(QFileInfo::exists(folder.modelPath()));
    EXPECT_EQ(stopped.prepareModelIfNeeded(false, {}), QUrl::fromLocalFile(folder.modelPath()));
    EXPECT_EQ(requestCount(), 1U);
    EXPECT_EQ(readFile(folder.modelPath()), body);
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
}

TEST_F(DefaultModelManagerWithServer, ANamedPipeInTheModelsPlaceIsNotWaitedFor)
{
    ASSERT_TRUE(QDir().mkpath(folder.path()));
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.modelPath()).constData(), 0600), 0);
    config.expectedSHA256 = digestOf(body);
    EXPECT_EQ(failure(), folder.modelPath() + u": It is not a regular file."_s);
    prepare(true);
    EXPECT_EQ(readFile(folder.modelPath()), body);
}

TEST_F(DefaultModelManagerWithServer, WhateverTheUmaskIsNobodyElseGetsAtTheModel)
{
    const Umask umask(0);
    prepare();
    EXPECT_EQ(modeOf(folder.modelPath()), 0600U);
    EXPECT_EQ(modeOf(folder.path()), 0700U);
}

TEST_F(DefaultModelManagerWithServer, AStagingPathThatCannotBeFreedIsAnErrorAfterTheDownload)
{
    ASSERT_TRUE(folder.putModel("old"));
    ASSERT_TRUE(QDir().mkpath(folder.stagingPath() + u"/in the way"_s));
    EXPECT_EQ(failure(true), folder.stagingPath() + u": Directory not empty"_s);
    EXPECT_EQ(requestCount(), 1U);
    EXPECT_EQ(readFile(folder.modelPath()), "old");
}

TEST_F(DefaultModelManagerWithServer, AFullDiskLeavesTheModelAsItWas)
{
    ASSERT_TRUE(folder.putModel("old"));
    {
        const FileSizeLimit limit(50'000);
        EXPECT_EQ(failure(true), folder.modelPath() + u": File too large"_s);
    }
    EXPECT_EQ(readFile(folder.modelPath()), "old");
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
}

TEST_F(DefaultModelManagerWithServer, AStopRequestLeavesTheModelAsItWas)
{
    ASSERT_TRUE(folder.putModel("old"));
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW(prepare(true, source.get_token()), Cancelled);
    EXPECT_EQ(folder.names(), QStringList(u"ggml-base.bin"_s));
    EXPECT_EQ(readFile(folder.modelPath()), "old");
}

TEST_F(DefaultModelManagerWithServer, EveryCallReadsTheConfigurationAnew)
{
    prepare();
    config.downloadURLString = server.urlString(u"/missing"_s);
    prepare(true);
    EXPECT_EQ(readFile(folder.modelPath()), "not found");
}

TEST_F(DefaultModelManagerWithServer, TheStatusTellsPresencePathAndTheDigestAsStored)
{
    config.expectedSHA256 = u" AB "_s;
    EXPECT_EQ(manager.modelStatus(), (ModelStatus{false, folder.modelPath(), u" AB "_s}));
    ASSERT_TRUE(folder.putModel("damaged"));
    EXPECT_EQ(manager.modelStatus(), (ModelStatus{true, folder.modelPath(), u" AB "_s}));
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(DefaultModelManagerWithServer, ReportsProgressToItsSink)
{
    std::vector<DownloadProgress> reports;
    DefaultModelManager reporting(
        folder.directories, [this] { return config; }, u"ggml-base.bin"_s,
        [&](const DownloadProgress &p) { reports.push_back(p); });
    reporting.prepareModelIfNeeded(false, {});
    ASSERT_FALSE(reports.empty());
    EXPECT_EQ(reports.back(), (DownloadProgress{body.size(), body.size()}));
}

} // namespace
} // namespace kestrova
