#pragma once

#include <optional>
#include <string_view>

namespace kestrova {

/// What "--help" prints.
extern const char *const usage;

bool contains(int argc, char **argv, std::string_view argument);

/// The first argument that means nothing to the program, nor to Qt, whose options its own
/// documentation lists. Needs neither a desktop nor an application object.
std::optional<std::string_view> unknownArgument(int argc, char **argv);

} // namespace kestrova
