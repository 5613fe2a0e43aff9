import QtQuick
import Kestrova.Primitives
import Kestrova.Dashboard

// The trend chart with its read-out: at the pointer, or where the arrow keys lead.
// An Item: a control would tell assistive technology no role.
Item {
    id: view

    required property DashboardModel model

    implicitHeight: 300
    activeFocusOnTab: true
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true

    Accessible.role: Accessible.Chart
    Accessible.name: plot.readOut || model.trendChart.textAlternative
    Accessible.focusable: true
    Keys.onPressed: event => {
        const marks = { [Qt.Key_Left]: -1, [Qt.Key_Right]: 1,
                        [Qt.Key_Home]: -plot.markCount, [Qt.Key_End]: plot.markCount }[event.key];
        event.accepted = marks !== undefined;
        if (event.accepted)
            moveBy(marks);
    }
    onActiveFocusChanged: plot.currentMark = -1

    // From behind the last mark where none is current.
    function moveBy(marks: int): void {
        const from = plot.currentMark < 0 ? plot.markCount : plot.currentMark;
        plot.currentMark = Math.max(0, Math.min(plot.markCount - 1, from + marks));
    }

    TrendPlot {
        id: plot

        anchors.fill: parent
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
    FocusRing {
        visible: view.activeFocus
        distance: 4
    }

    ReadOut {
        x: Math.round(Math.max(0, Math.min(view.width - width, plot.currentCentre - width / 2)))
        text: plot.readOut
    }
}
