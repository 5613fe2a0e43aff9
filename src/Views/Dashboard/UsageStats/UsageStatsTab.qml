import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Dashboard

ColumnLayout {
    id: tab

    required property DashboardModel model

    spacing: 12

    TabHeader {
        Layout.fillWidth: true
        title: "Usage Stats"
    }
    GridLayout {
        id: pickers

        readonly property bool isStacked: tab.width < period.implicitWidth + style.implicitWidth
                                          + 2 * columnSpacing

        columns: isStacked ? 1 : 3
        columnSpacing: 12
        rowSpacing: 8

        SegmentedPicker {
            id: period

            caption: "Period"
            choices: tab.model.periodTitles
            currentIndex: tab.model.period
            onChosen: index => tab.model.setPeriod(index)
        }
        Item {
            Layout.fillWidth: true
            visible: !pickers.isStacked
        }
        SegmentedPicker {
            id: style

            caption: "Chart Type"
            choices: tab.model.chartStyleTitles
            currentIndex: tab.model.chartStyle
            onChosen: index => tab.model.setChartStyle(index)
        }
    }
    RowLayout {
        spacing: 12

        CompactMetric {
            title: "Recordings"
            value: tab.model.recordings
        }
        CompactMetric {
            title: "Words"
            value: tab.model.words
        }
        CompactMetric {
            title: "Minutes"
            value: tab.model.minutes
        }
    }
    SurfaceCard {
        Layout.fillWidth: true
        padding: 14

        ModelLoader {
            width: parent.width
            model: tab.model
            document: tab.model.chartStyle === DashboardModel.Heatmap ? "HeatmapView.qml"
                                                                      : "TrendChartView.qml"
        }
    }
}
