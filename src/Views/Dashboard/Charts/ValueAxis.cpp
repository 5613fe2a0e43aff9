#include "Views/Dashboard/Charts/ValueAxis.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrova {

namespace {

constexpr int fewestSteps = 3;
constexpr int mostSteps = 5;

/// From one step to the next is at most two and a half times as much, so that one of them always
/// leads to three to five.
double smallestStep(double least)
{
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 2.5, 5.0}) {
        const double step = factor * power;
        if (step >= least && step == std::floor(step))
            return step;
    }
    return 10 * power;
}

} // namespace

ValueAxis ValueAxis::reaching(double most)
{
    if (most <= 0)
        return {};
    const double step = smallestStep(std::max(1.0, most / mostSteps));
    return {step, std::max(fewestSteps, int(std::ceil(most / step)))};
}

QStringList ValueAxis::labels() const
{
    QStringList labels;
    for (int i = 0; i <= stepCount; ++i)
        labels.append(QString::number(i * step, 'f', 0));
    return labels;
}

} // namespace kestrova
