#include "support/WaitUntil.h"

#include <QCoreApplication>

#include <chrono>
#include <thread>

namespace kestrova {

using namespace std::chrono_literals;

bool waitUntil(const std::function<bool()> &condition)
{
    const auto limit = std::chrono::steady_clock::now() + 60s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

} // namespace kestrova
