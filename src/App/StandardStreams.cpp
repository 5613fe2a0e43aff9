#include "App/StandardStreams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace kestrova {

namespace {

constexpr auto nothing = "/dev/null";

/// The same pipe or terminal, opened anew: that it waits for nobody is a property of the opening,
/// which we would otherwise share with whoever started us.
int openedAnew(int stream)
{
    struct stat status = {};
    // A file would be at its beginning again.
    if (fstat(stream, &status) != 0 || !(S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode)))
        return -1;
    const std::string path = "/proc/self/fd/" + std::to_string(stream);
    const int access = stream == STDIN_FILENO ? O_RDONLY : O_WRONLY;
    return open(path.c_str(), access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

} // namespace

void openMissingStandardStreams()
{
    // The lowest free descriptor is the one that is opened.
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) == -1)
            open(nothing, O_RDWR);
    }
}

int takeStandardStream(int stream, int replacement)
{
    int own = openedAnew(stream);
    if (own < 0)
        own = fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (own < 0)
        return stream;
    const int other = replacement >= 0 ? replacement : open(nothing, O_RDWR | O_CLOEXEC);
    if (other >= 0)
        dup2(other, stream);
    if (other != replacement)
        close(other);
    return own;
}

} // namespace kestrova
