#pragma once

#include "Models/Json/RawValue.h"

namespace kestrova {

/// The colour scheme of every window; chosen by the user, never taken from the desktop.
enum class AppTheme { light, dark };

template <>
struct RawValues<AppTheme>
{
    static constexpr std::array table{
        std::pair{AppTheme::light, "light"},
        std::pair{AppTheme::dark, "dark"},
    };
};

} // namespace kestrova
