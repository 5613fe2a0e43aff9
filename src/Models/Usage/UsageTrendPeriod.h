#pragma once

#include "Models/Json/RawValue.h"

namespace kestrova {

/// The width of one bar of the trend chart.
enum class UsageTrendPeriod { hourly, daily, weekly, monthly };

template <>
struct RawValues<UsageTrendPeriod>
{
    static constexpr std::array table{
        std::pair{UsageTrendPeriod::hourly, "hourly"},
        std::pair{UsageTrendPeriod::daily, "daily"},
        std::pair{UsageTrendPeriod::weekly, "weekly"},
        std::pair{UsageTrendPeriod::monthly, "monthly"},
    };
};

} // namespace kestrova
