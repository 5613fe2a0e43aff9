#include "Services/Model/Sha256.h"

#include "Concurrency/Cancelled.h"
#include "Models/ReadableError.h"
#include "Services/TestFiles.h"
#include "support/QtPrinting.h"

#include <QCryptographicHash>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace kestrova {
namespace {

using namespace Qt::StringLiterals;

class Sha256 : public testing::Test
{
protected:
    QString digestOf(const QByteArray &bytes)
    {
        EXPECT_TRUE(writeFile(path, bytes));
        return sha256OfFile(path, {});
    }

    QTemporaryDir folder;
    const QString path = folder.filePath(u"file"_s);
};

// The examples of FIPS 180-4 and their usual companions.
TEST_F(Sha256, GivesTheDigestsOfTheStandard)
{
    EXPECT_EQ(digestOf(""), u"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"_s);
    EXPECT_EQ(digestOf("abc"),
              u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"_s);
    EXPECT_EQ(digestOf(QByteArray(1'000'000, 'a')),
              u"cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"_s);
}

TEST_F(Sha256, ReadsEveryByteWhateverTheLength)
{
    const qsizetype piece = 256 * 1024;
    for (const qsizetype size : {piece - 1, piece, piece + 1, 3 * piece, 3 * piece + 17}) {
        const QByteArray bytes = patternedBytes(size);
        const QByteArray expected = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
        EXPECT_EQ(digestOf(bytes), QString::fromLatin1(expected.toHex())) << size;
    }
}

TEST_F(Sha256, AMissingFileIsNamedInTheError)
{
    try {
        sha256OfFile(path, {});
        FAIL() << "no error";
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.errorDescription(), path + u": No such file or directory"_s);
    }
}

TEST_F(Sha256, WhatCannotBeReadIsAnError)
{
    EXPECT_THROW(sha256OfFile(folder.path(), {}), PlatformError);
    // Opens, but its first page is not mapped: the reading itself fails.
    EXPECT_THROW(sha256OfFile(u"/proc/self/mem"_s, {}), PlatformError);
}

TEST_F(Sha256, StopsWhenAsked)
{
    EXPECT_TRUE(writeFile(path, "abc"));
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW(sha256OfFile(path, source.get_token()), Cancelled);
}

} // namespace
} // namespace kestrova
