#include "Comparison.h"
#include "Services/LoopbackHttpServer.h"
#include "Services/Model/FileDownload.h"

#include <QProcess>
#include <QTemporaryDir>

#include <stdexcept>

/// Downloads 1 GB from a server in this process: ours, made durable, against `curl` and `sync`.
namespace {

using namespace Qt::StringLiterals;

constexpr int rounds = 5;
constexpr qsizetype pieceSize = 1 << 20;
constexpr int pieceCount = 1000;

void sendFile(const kestrova::HttpRequest &, kestrova::LoopbackHttpServer::Connection &connection)
{
    static const QByteArray piece(pieceSize, 'x');
    connection.send(kestrova::responseHead(
        "200 OK", {"Content-Length: " + QByteArray::number(pieceSize * pieceCount)}));
    for (int i = 0; i < pieceCount; ++i)
        connection.send(piece);
}

void runCommand(const QString &program, const QStringList &arguments)
{
    if (QProcess::execute(program, arguments) != 0)
        throw std::runtime_error("a command failed");
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"file"_s);
    const kestrova::LoopbackHttpServer server(&sendFile);
    kestrova::FileDownload download;
    const auto ours = [&] { download.fetch(server.url(u"/"_s), path, {}, {})->moveTo(path); };
    const auto theirs = [&] {
        runCommand(u"curl"_s, {u"-s"_s, u"-o"_s, path, server.urlString(u"/"_s)});
        runCommand(u"sync"_s, {path});
    };
    const kestrova::Comparison comparison(rounds, double(pieceSize) * pieceCount / 1e6);
    comparison.run("FileDownload", ours, "curl and sync", theirs);
    kestrova::Comparison::printPeakMemory();
}
