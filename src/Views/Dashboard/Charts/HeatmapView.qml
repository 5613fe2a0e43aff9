pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Kestrova.Primitives
import Kestrova.Dashboard

// The heatmap of daily words with its read-out and its legend. Where it is too wide it scrolls
// sideways, from today on.
// An Item: a control would tell assistive technology no role.
Item {
    id: view

    required property DashboardModel model
    readonly property heatmapChart chart: model.heatmapChart
    readonly property real gutter: 28

    implicitHeight: chart.isEmpty ? 96 : legend.y + legend.height
    activeFocusOnTab: !chart.isEmpty
    LayoutMirroring.enabled: false
    LayoutMirroring.childrenInherit: true

    Accessible.role: Accessible.Chart
    Accessible.name: chart.isEmpty ? empty.text : grid.readOut || chart.textAlternative
    Accessible.focusable: true
    Keys.onLeftPressed: moveTo(grid.neighbour(-1, 0))
    Keys.onRightPressed: moveTo(grid.neighbour(1, 0))
    Keys.onUpPressed: moveTo(grid.neighbour(0, -1))
    Keys.onDownPressed: moveTo(grid.neighbour(0, 1))
    onActiveFocusChanged: grid.currentCell = -1

    function moveTo(cell: int): void {
        grid.currentCell = cell;
        const margin = 3 * grid.cell;
        scroller.contentX = Math.max(grid.currentRect.right + margin - scroller.width,
                                     Math.min(grid.currentRect.left - margin, scroller.contentX));
        scroller.returnToBounds();
    }

    FocusRing {
        visible: view.activeFocus
        distance: 4
    }

    StyledText {
        id: empty

        anchors.centerIn: parent
        visible: view.chart.isEmpty
        text: "No daily usage yet."
        color: Theme.secondary
        Accessible.ignored: true
    }
    Repeater {
        model: view.chart.weekdayLabels

        StyledText {
            required property string modelData
            required property int index

            y: grid.cellsTop + index * (grid.cell + grid.gap) + (grid.cell - height) / 2
            text: modelData
            style: Theme.caption
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
    Flickable {
        id: scroller

        x: view.gutter
        width: Math.max(0, view.width - x)
        height: grid.implicitHeight
        contentWidth: grid.implicitWidth
        contentHeight: grid.implicitHeight
        clip: contentWidth > width
        boundsBehavior: Flickable.StopAtBounds
        onWidthChanged: showToday()
        onContentWidthChanged: showToday()

        T.ScrollBar.horizontal: OverlayScrollBar {}

        function showToday(): void {
            contentX = Math.max(0, contentWidth - width);
        }

        HeatmapGrid {
            id: grid

            width: implicitWidth
            height: implicitHeight
            chart: view.chart
            availableWidth: scroller.width
            labelFont: Theme.caption.font
            labelColor: Theme.secondary
            levelColors: [Theme.heatmapLevel0, Theme.heatmapLevel1, Theme.heatmapLevel2,
                          Theme.heatmapLevel3, Theme.heatmapLevel4]
            untrackedColor: Theme.heatmapUntracked
            outlineColor: Theme.border
            focusColor: Theme.focus
            onChartChanged: currentCell = -1

            HoverHandler {
                onPointChanged: grid.currentCell = grid.cellAt(point.position.x, point.position.y)
                onHoveredChanged: {
                    if (!hovered)
                        grid.currentCell = -1;
                }
            }
        }
    }
    HeatmapLegend {
        id: legend

        x: Math.min(view.width, scroller.x + grid.width) - width
        y: scroller.height + 14
        visible: !view.chart.isEmpty
        cell: grid.cell
        colors: grid.levelColors
    }
    ReadOut {
        readonly property rect cell: grid.currentRect
        readonly property bool isInFirstRows: cell.y < grid.cellsTop + 2 * (grid.cell + grid.gap)

        x: Math.round(Math.max(0, Math.min(view.width - width, scroller.x - scroller.contentX
                                           + cell.x + (cell.width - width) / 2)))
        y: Math.round(isInFirstRows ? cell.y + cell.height + 4 : cell.y - height - 4)
        text: grid.readOut
    }
}
