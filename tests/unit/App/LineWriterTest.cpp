#include "App/LineWriter.h"

#include "support/ApplicationObject.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <memory>

namespace kestrova {
namespace {

class LineWriterTest : public testing::Test
{
protected:
    LineWriterTest()
    {
        int ends[2] = {};
        EXPECT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
        reading = ends[0];
        writer = std::make_unique<LineWriter>(ends[1]);
    }
    ~LineWriterTest() override { close(reading); }

    /// What the pipe holds.
    void read()
    {
        char bytes[65536];
        for (ssize_t count = 0; (count = ::read(reading, bytes, sizeof bytes)) > 0;)
            received.append(bytes, count);
    }
    bool arrives(const QByteArray &expected)
    {
        return waitUntil([&] {
            read();
            return received == expected;
        });
    }

    ApplicationObject<QCoreApplication> application;
    int reading = -1;
    std::unique_ptr<LineWriter> writer;
    QByteArray received;
};

TEST_F(LineWriterTest, ALineIsWrittenAtOnce)
{
    EXPECT_TRUE(writer->write("one\n"));
    EXPECT_TRUE(writer->write("two\n"));
    read();
    EXPECT_EQ(received, "one\ntwo\n");
}

TEST_F(LineWriterTest, WhatTheReaderDoesNotTakeIsKeptUpToALimitAndComesWholeAndInOrder)
{
    QByteArray expected;
    bool isTaken = true;
    for (int number = 0; isTaken; ++number) {
        const QByteArray line = QByteArray::number(number).rightJustified(999, '.') + '\n';
        isTaken = writer->write(line);
        if (isTaken)
            expected += line;
    }
    EXPECT_GT(expected.size(), LineWriter::limit);
    EXPECT_LT(expected.size(), 2 * LineWriter::limit);
    EXPECT_TRUE(arrives(expected));
    EXPECT_TRUE(writer->write("last\n"));
    EXPECT_TRUE(arrives(expected + "last\n"));
}

TEST_F(LineWriterTest, ALineBeyondTheLimitGoesWhole)
{
    const QByteArray line = QByteArray(3 * LineWriter::limit, 'x') + '\n';
    EXPECT_TRUE(writer->write(line));
    EXPECT_FALSE(writer->write("next\n"));
    EXPECT_TRUE(arrives(line));
}

} // namespace
} // namespace kestrova
