#pragma once

#include <pthread.h>

#include <cstddef>

namespace kestrova {

/// While it lives, no new thread can be had: each would need a stack larger than the address space.
class ThreadShortage
{
public:
    ThreadShortage()
    {
        pthread_getattr_default_np(&m_usual);
        pthread_attr_t huge = m_usual;
        pthread_attr_setstacksize(&huge, std::size_t(1) << 60);
        pthread_setattr_default_np(&huge);
    }
    ~ThreadShortage() { pthread_setattr_default_np(&m_usual); }
    ThreadShortage(const ThreadShortage &) = delete;
    ThreadShortage &operator=(const ThreadShortage &) = delete;

private:
    pthread_attr_t m_usual = {};
};

} // namespace kestrova
