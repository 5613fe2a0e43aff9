#pragma once

#include <sys/resource.h>

namespace kestrova {

/// While it lives, this process has no file descriptor but those below the limit and those that it
/// has already.
class DescriptorLimit
{
public:
    explicit DescriptorLimit(rlim_t limit)
    {
        getrlimit(RLIMIT_NOFILE, &m_oldLimit);
        const rlimit newLimit = {limit, m_oldLimit.rlim_max};
        setrlimit(RLIMIT_NOFILE, &newLimit);
    }
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &m_oldLimit); }
    DescriptorLimit(const DescriptorLimit &) = delete;
    DescriptorLimit &operator=(const DescriptorLimit &) = delete;

private:
    rlimit m_oldLimit = {};
};

} // namespace kestrova
