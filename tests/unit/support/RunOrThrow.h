#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace kestrova {

/// Runs a shell command; throws std::runtime_error when it fails.
inline void runOrThrow(const std::string &command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error(command + " failed");
}

} // namespace kestrova
