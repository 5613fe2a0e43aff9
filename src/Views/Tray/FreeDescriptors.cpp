#include "Views/Tray/FreeDescriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <vector>

namespace kestrova {

bool areDescriptorsFree(int count)
{
    std::vector<int> taken;
    int descriptor = 0;
    while (count-- > 0 && descriptor >= 0) {
        descriptor = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
        taken.push_back(descriptor);
    }
    for (const int one : taken)
        close(one);
    return descriptor >= 0;
}

} // namespace kestrova
