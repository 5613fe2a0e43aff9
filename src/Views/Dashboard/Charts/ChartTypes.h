#pragma once

#include "Views/Dashboard/Charts/HeatmapChart.h"
#include "Views/Dashboard/Charts/TrendChart.h"

#include <qqml.h>

namespace kestrova {

/// The charts' descriptions as QML knows them.
struct QmlTrendChart
{
    Q_GADGET
    QML_FOREIGN(kestrova::TrendChart)
    QML_VALUE_TYPE(trendChart)
};

struct QmlHeatmapChart
{
    Q_GADGET
    QML_FOREIGN(kestrova::HeatmapChart)
    QML_VALUE_TYPE(heatmapChart)
};

} // namespace kestrova
