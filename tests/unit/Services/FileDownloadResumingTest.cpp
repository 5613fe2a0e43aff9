#include "Services/Model/FileDownload.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"
#include "Services/LoopbackHttpServer.h"
#include "Services/TestFiles.h"
#include "support/QtPrinting.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::AnyOf;
using testing::IsEmpty;
using testing::StartsWith;

using Connection = LoopbackHttpServer::Connection;

constexpr DownloadTimings quick = {
    .connectLimit = 30s, .stallLimit = 30s, .pauseBeforeResuming = 0ms, .progressInterval = 0ms};
constexpr qsizetype cut = 70'000;

/// The server answers the first request with the beginning of the file and breaks off; each test
/// says what it answers then.
class FileDownloadThatBreaks : public testing::Test
{
protected:
    using Answer = std::function<QByteArray(const HttpRequest &)>;

    LoopbackHttpServer::Handler breakingThen(Answer answer)
    {
        return [this, answer](const HttpRequest &request, Connection &connection) {
            connection.send(requestCount++ == 0 ? file.answer(request, cut) : answer(request));
        };
    }

    QByteArray fetch(const LoopbackHttpServer &server, const QString &path = u"/m.bin"_s)
    {
        download.fetch(server.url(path), destination, {}, {})->moveTo(destination);
        return readFile(destination);
    }

    void expectFailure(const LoopbackHttpServer &server)
    {
        try {
            fetch(server);
            FAIL() << "no error";
        } catch (const PlatformError &error) {
            // The second is what libcurl says from 8.7 on.
            EXPECT_THAT(error.what(), AnyOf(StartsWith("Download failed: transfer closed with "),
                                            StartsWith("Download failed: end of response with ")));
        }
    }

    QTemporaryDir folder;
    const QString destination = folder.filePath(u"m.bin"_s);
    const ServedFile file{patternedBytes(200'000)};
    FileDownload download{quick};
    std::atomic<int> requestCount = 0;
};

TEST_F(FileDownloadThatBreaks, GoesOnWhereItBroke)
{
    const LoopbackHttpServer server(
        breakingThen([&](const HttpRequest &request) { return file.answer(request); }));
    EXPECT_EQ(fetch(server), file.body);
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[1].headers["range"], "bytes=70000-");
    EXPECT_EQ(requests[1].headers["if-range"], "\"v1\"");
    EXPECT_FALSE(requests[0].headers.contains("range"));
}

TEST_F(FileDownloadThatBreaks, GoesOnAfterAStall)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        const bool isFirst = requestCount++ == 0;
        connection.send(file.answer(request, isFirst ? cut : file.body.size()));
        if (isFirst)
            connection.waitForClose();
    });
    DownloadTimings timings = quick;
    timings.stallLimit = 2s; // The second answer must not stall on a busy machine.
    FileDownload impatient(timings);
    impatient.fetch(server.url(u"/"_s), destination, {}, {})->moveTo(destination);
    EXPECT_EQ(readFile(destination), file.body);
    EXPECT_EQ(requestCount, 2);
}

TEST_F(FileDownloadThatBreaks, GoesOnByDateWhenThereIsNoEntityTag)
{
    const QByteArray modified = "Fri, 01 Mar 2024 10:00:00 GMT";
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        const bool isFirst = requestCount++ == 0;
        QByteArray answer =
            ServedFile{file.body, modified}.answer(request, isFirst ? cut : 1 << 30);
        answer.replace("ETag: ", "Date: Fri, 01 Mar 2024 10:00:01 GMT\r\nLast-Modified: ");
        connection.send(answer);
    });
    EXPECT_EQ(fetch(server), file.body);
    EXPECT_EQ(server.requests()[1].headers["if-range"], modified);
}

TEST_F(FileDownloadThatBreaks, TakesTheNewFileWhenTheServerHasAnother)
{
    const ServedFile newer{patternedBytes(150'000, 2), "\"v2\""};
    const LoopbackHttpServer server(
        breakingThen([&](const HttpRequest &request) { return newer.answer(request); }));
    EXPECT_EQ(fetch(server), newer.body);
}

/// The range that was asked for, cut short as a server may do.
QByteArray shortPart(const QByteArray &body, qsizetype start)
{
    const QByteArray part = body.mid(start, 50'000);
    return responseHead("206 Partial Content",
                        {"ETag: \"v1\"", "Content-Length: " + QByteArray::number(part.size()),
                         "Content-Range: bytes " + QByteArray::number(start) + '-' +
                             QByteArray::number(start + part.size() - 1) + '/' +
                             QByteArray::number(body.size())}) +
           part;
}

TEST_F(FileDownloadThatBreaks, GoesOnUntilTheWholeFileIsThereWhenTheServerSendsLessThanAsked)
{
    const LoopbackHttpServer server(breakingThen(
        [&](const HttpRequest &request) { return shortPart(file.body, request.rangeStart()); }));
    EXPECT_EQ(fetch(server), file.body);
    EXPECT_EQ(requestCount, 4);
}

TEST_F(FileDownloadThatBreaks, LearnsTheLengthFromTheRestWhenTheBeginningDidNotTellIt)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        if (requestCount++ > 0)
            connection.send(shortPart(file.body, request.rangeStart()));
        else
            connection.send(responseHead("200 OK", {"ETag: \"v1\"", "Transfer-Encoding: chunked"}) +
                            QByteArray::number(file.body.size(), 16) + "\r\n" +
                            file.body.left(cut));
    });
    EXPECT_EQ(fetch(server), file.body);
    EXPECT_EQ(requestCount, 4);
}

TEST_F(FileDownloadThatBreaks, AnythingButTheRestIsNotAppendedAndTheBreakIsTheError)
{
    const QByteArray body = file.body.mid(cut);
    const QByteArray length = "Content-Length: " + QByteArray::number(body.size());
    const QList<QByteArray> answers = {
        responseHead("503 Busy", {"Content-Length: 4"}) + "busy",
        responseHead("416 Range Not Satisfiable", {"Content-Length: 0"}),
        responseHead("206 Partial Content", {length}) + body,
        responseHead("206 Partial Content", {length, "Content-Range: bytes 0-129999/200000"}) +
            body,
        responseHead("206 Partial Content", {length, "Content-Range: bytes 70000-199999/200001"}) +
            body,
        responseHead("206 Partial Content",
                     {length, "Content-Range: bytes 70000-199999/200000", "ETag: \"v2\""}) +
            body,
    };
    for (const QByteArray &answer : answers) {
        requestCount = 0;
        const LoopbackHttpServer server(breakingThen([&](const HttpRequest &) { return answer; }));
        expectFailure(server);
        EXPECT_EQ(requestCount, 2) << answer.left(200).constData();
        EXPECT_THAT(namesIn(folder.path()), IsEmpty());
    }
}

TEST_F(FileDownloadThatBreaks, WithoutAStrongValidatorItFailsAtOnce)
{
    const QList<QByteArray> validators = {
        "ETag: W/\"v1\"",
        "Last-Modified: Fri, 01 Mar 2024 10:00:00 GMT",
        "Last-Modified: Fri, 01 Mar 2024 10:00:00 GMT\r\nDate: Fri, 01 Mar 2024 10:00:00 GMT",
    };
    for (const QByteArray &validator : validators) {
        const LoopbackHttpServer server([&](const HttpRequest &, Connection &connection) {
            connection.send(responseHead("200 OK", {validator, "Content-Length: 10"}) + "abc");
        });
        expectFailure(server);
        EXPECT_EQ(server.requests().size(), 1U) << validator.constData();
    }
}

TEST_F(FileDownloadThatBreaks, GivesUpWhenNothingMoreArrives)
{
    const LoopbackHttpServer server(
        breakingThen([&](const HttpRequest &request) { return file.answer(request, 0); }));
    expectFailure(server);
    EXPECT_EQ(requestCount, 2);
}

TEST_F(FileDownloadThatBreaks, GivesUpAfterTenResumptions)
{
    const LoopbackHttpServer server(
        breakingThen([&](const HttpRequest &request) { return file.answer(request, 100); }));
    expectFailure(server);
    EXPECT_EQ(requestCount, 11);
}

TEST_F(FileDownloadThatBreaks, TheNextCallGoesOnWhereAFailedOneEnded)
{
    std::atomic<bool> isUp = false;
    const LoopbackHttpServer server(breakingThen(
        [&](const HttpRequest &request) { return isUp ? file.answer(request) : QByteArray(); }));
    EXPECT_THROW(fetch(server), PlatformError);
    EXPECT_EQ(namesIn(folder.path()).size(), 1);
    isUp = true;
    EXPECT_EQ(fetch(server), file.body);
    EXPECT_EQ(server.requests().back().headers["range"], "bytes=70000-");
    EXPECT_EQ(namesIn(folder.path()), QStringList(u"m.bin"_s));
}

TEST_F(FileDownloadThatBreaks, TheNextCallGoesOnWhereACancelledOneEnded)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        const bool isFirst = requestCount++ == 0;
        connection.send(file.answer(request, isFirst ? cut : file.body.size()));
        connection.waitForClose();
    });
    std::stop_source source;
    const auto stopAtTheCut = [&](const DownloadProgress &progress) {
        if (progress.receivedBytes == cut)
            source.request_stop();
    };
    EXPECT_THROW(
        download.fetch(server.url(u"/m.bin"_s), destination, stopAtTheCut, source.get_token()),
        Cancelled);
    EXPECT_EQ(fetch(server), file.body);
    EXPECT_EQ(server.requests()[1].headers["range"], "bytes=70000-");
}

TEST_F(FileDownloadThatBreaks, TheNextCallFetchesAllAnewWhenTheServerDoesNotGoOn)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        const int number = requestCount++;
        if (number == 0)
            connection.send(file.answer(request, cut));
        else if (number == 2)
            connection.send(responseHead("416 Range Not Satisfiable", {"Content-Length: 3"}) +
                            "416");
        else if (number == 3)
            connection.send(file.answer(request));
    });
    EXPECT_THROW(fetch(server), PlatformError);
    EXPECT_EQ(fetch(server), file.body);
    EXPECT_FALSE(server.requests()[3].headers.contains("range"));
}

TEST_F(FileDownloadThatBreaks, AnotherAddressDoesNotGoOnFromIt)
{
    const LoopbackHttpServer server([&](const HttpRequest &request, Connection &connection) {
        const bool isOther = request.path == u"/other"_s;
        connection.send(requestCount++ == 0 || isOther
                            ? file.answer(request, isOther ? file.body.size() : cut)
                            : QByteArray());
    });
    EXPECT_THROW(fetch(server), PlatformError);
    EXPECT_EQ(fetch(server, u"/other"_s), file.body);
    EXPECT_FALSE(server.requests().back().headers.contains("range"));
}

TEST_F(FileDownloadThatBreaks, WhatItRemembersIsDeletedWithIt)
{
    const LoopbackHttpServer server(breakingThen([](const HttpRequest &) { return QByteArray(); }));
    {
        FileDownload shortLived(quick);
        EXPECT_THROW(shortLived.fetch(server.url(u"/"_s), destination, {}, {}), PlatformError);
        EXPECT_EQ(namesIn(folder.path()).size(), 1);
    }
    EXPECT_THAT(namesIn(folder.path()), IsEmpty());
}

} // namespace
} // namespace kestrova
