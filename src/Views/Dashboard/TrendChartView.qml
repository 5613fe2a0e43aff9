import QtQuick
import QtQuick.Templates as T
import Kestrova.Primitives
import Kestrova.Dashboard

// The trend chart with its read-out: at the pointer, or where the arrow keys lead.
T.Control {
    id: view

    required property DashboardModel model

    implicitHeight: 300
    focusPolicy: Qt.TabFocus
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true

    Accessible.role: Accessible.Chart
    Accessible.name: plot.readOut || model.trendChart.textAlternative
    Accessible.focusable: true
    Keys.onLeftPressed: plot.currentMark = Math.max(0, (plot.currentMark < 0 ? plot.markCount : plot.currentMark) - 1)
    Keys.onRightPressed: plot.currentMark = Math.min(plot.markCount - 1, plot.currentMark < 0 ? plot.markCount : plot.currentMark + 1)
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End;
        if (event.accepted)
            plot.currentMark = event.key === Qt.Key_Home ? 0 : plot.markCount - 1;
    }
    onActiveFocusChanged: plot.currentMark = -1

    contentItem: TrendPlot {
        id: plot

        chart: view.model.trendChart
        isLine: view.model.chartStyle === DashboardModel.Line
        duration: Theme.chart
        labelFont: Theme.caption.font
        markColor: Theme.accent
        softMarkColor: Theme.accentSoft
        surfaceColor: Theme.control
        labelColor: Theme.secondary
        gridColor: Theme.fill(Theme.primary, 0.09)
        baseLineColor: Theme.fill(Theme.primary, 0.22)
        guideColor: Theme.fill(Theme.primary, 0.25)
        onChartChanged: currentMark = -1

        HoverHandler {
            onPointChanged: plot.currentMark = plot.markAt(point.position.x, point.position.y)
            onHoveredChanged: {
                if (!hovered)
                    plot.currentMark = -1;
            }
        }
    }
    background: Item {
        FocusRing {
            visible: view.visualFocus
            distance: 4
        }
    }

    ReadOut {
        x: Math.round(Math.max(0, Math.min(view.width - width, plot.currentCentre - width / 2)))
        text: plot.readOut
    }
}
