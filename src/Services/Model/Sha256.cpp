#include "Services/Model/Sha256.h"

#include "Concurrency/Cancelled.h"
#include "Platform/FileSystem.h"

#include <openssl/evp.h>

#include <QFile>

#include <cerrno>
#include <memory>
#include <vector>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

// Large enough that the reading costs nothing beside the hashing, small enough for the cache.
constexpr std::size_t pieceSize = 0x40000;

void require(int opensslResult)
{
    if (opensslResult != 1)
        throw PlatformError(u"SHA-256 is not available."_s);
}

} // namespace

QString sha256OfFile(const QString &path, const std::stop_token &stop)
{
    const auto file = openRegularFile(path);
    if (!file)
        throw fileError(path, ENOENT);

    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                          &EVP_MD_CTX_free);
    require(EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr));
    std::vector<char> piece(pieceSize);
    for (;;) {
        throwIfStopRequested(stop);
        const qint64 length = file->read(piece.data(), static_cast<qint64>(piece.size()));
        if (length < 0)
            throw PlatformError(path + u": "_s + file->errorString());
        if (length == 0)
            break;
        require(EVP_DigestUpdate(context.get(), piece.data(), static_cast<std::size_t>(length)));
    }

    QByteArray digest(EVP_MAX_MD_SIZE, Qt::Uninitialized);
    unsigned int digestLength = 0;
    require(EVP_DigestFinal_ex(context.get(), reinterpret_cast<unsigned char *>(digest.data()),
                               &digestLength));
    digest.truncate(static_cast<qsizetype>(digestLength));
    return QString::fromLatin1(digest.toHex());
}

} // namespace kestrova
