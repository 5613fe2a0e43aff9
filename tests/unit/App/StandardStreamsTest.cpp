#include "App/StandardStreams.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace kestrova {
namespace {

/// Leads standard input to a pipe as long as it lasts.
class PipedInput
{
public:
    PipedInput()
    {
        int ends[2] = {};
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        dup2(ends[0], STDIN_FILENO);
        close(ends[0]);
        writing = ends[1];
    }
    ~PipedInput()
    {
        close(writing);
        dup2(m_old, STDIN_FILENO);
        close(m_old);
    }
    PipedInput(const PipedInput &) = delete;
    PipedInput &operator=(const PipedInput &) = delete;

    int writing = -1;

private:
    const int m_old = dup(STDIN_FILENO);
};

TEST(StandardStreams, APipeThatIsTakenIsNotWaitedForAndNotInherited)
{
    const PipedInput input;
    const int shared = dup(STDIN_FILENO);
    const int own = takeStandardStream(STDIN_FILENO, -1);
    char byte = 0;
    EXPECT_EQ(read(own, &byte, 1), -1);
    EXPECT_EQ(errno, EAGAIN);
    EXPECT_EQ(fcntl(own, F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(fcntl(shared, F_GETFL) & O_NONBLOCK, 0) << "others that have the pipe do wait";

    EXPECT_EQ(write(input.writing, "x", 1), 1);
    EXPECT_EQ(read(STDIN_FILENO, &byte, 1), 0) << "what is left there is empty";
    EXPECT_EQ(read(own, &byte, 1), 1);
    EXPECT_EQ(byte, 'x');
    close(own);
    close(shared);
}

TEST(StandardStreams, AFileGoesOnWhereItIs)
{
    const PipedInput restored;
    const int file = open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(lseek(file, 1, SEEK_SET), 1);
    dup2(file, STDIN_FILENO);
    close(file);
    const int own = takeStandardStream(STDIN_FILENO, -1);
    char bytes[3] = {};
    EXPECT_EQ(read(own, bytes, 3), 3);
    EXPECT_EQ(std::string(bytes, 3), "ELF");
    close(own);
}

TEST(StandardStreams, AStreamLeadsToTheOtherOneFromThenOn)
{
    int ends[2] = {};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const int own = takeStandardStream(STDOUT_FILENO, ends[1]);
    EXPECT_EQ(write(STDOUT_FILENO, "x", 1), 1);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 1);
    dup2(own, STDOUT_FILENO);
    for (const int descriptor : {own, ends[0], ends[1]})
        close(descriptor);
}

} // namespace
} // namespace kestrova
