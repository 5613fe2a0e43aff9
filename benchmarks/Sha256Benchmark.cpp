#include "Comparison.h"
#include "Services/Model/Sha256.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <stdexcept>

/// Hashes a file of 1 GB in the temporary directory: ours against `openssl dgst -sha256`.
namespace {

using namespace Qt::StringLiterals;

constexpr int rounds = 7;
constexpr qsizetype pieceSize = 1 << 20;
constexpr int pieceCount = 1000;

void writeRandomFile(const QString &path)
{
    QFile file(path);
    QByteArray piece(pieceSize, Qt::Uninitialized);
    bool isWritten = file.open(QIODevice::WriteOnly);
    for (int i = 0; isWritten && i < pieceCount; ++i) {
        QRandomGenerator::global()->generate(piece.begin(), piece.end());
        isWritten = file.write(piece) == piece.size();
    }
    if (!isWritten)
        throw std::runtime_error("the file cannot be written");
}

QString opensslDigest(const QString &path)
{
    QProcess openssl;
    openssl.start(u"openssl"_s, {u"dgst"_s, u"-sha256"_s, u"-r"_s, path});
    if (!openssl.waitForFinished(-1))
        throw std::runtime_error("openssl cannot be run");
    return QString::fromLatin1(openssl.readAllStandardOutput().left(64));
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"file"_s);
    writeRandomFile(path);
    // Also puts the file into the cache, so that neither is timed on the disk.
    if (kestrova::sha256OfFile(path, {}) != opensslDigest(path))
        throw std::runtime_error("the digests differ");

    const kestrova::Comparison comparison(rounds, double(pieceSize) * pieceCount / 1e6);
    comparison.run(
        "sha256OfFile", [&] { kestrova::sha256OfFile(path, {}); }, "openssl dgst",
        [&] { opensslDigest(path); });
    kestrova::Comparison::printPeakMemory();
}
