pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Dashboard

ColumnLayout {
    id: tab

    required property DashboardModel model

    spacing: 12

    RowLayout {
        Layout.bottomMargin: 4
        spacing: 12

        TabHeader {
            Layout.fillWidth: true
            title: "Usage Overview"
            subtitle: "Live insight into recordings, words, and routing"
        }
        StatusPill {
            status: tab.model.status
        }
    }
    GridLayout {
        columns: 4
        columnSpacing: 12
        rowSpacing: 12

        Repeater {
            model: tab.model.usageCards.length

            UsageTotalsCard {
                required property int index

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 1
                totals: tab.model.usageCards[index]
            }
        }
    }
    SurfaceCard {
        Layout.fillWidth: true
        padding: 14

        Column {
            width: parent.width
            spacing: 6

            StyledText {
                text: "Efficiency"
                style: Theme.headline
                Accessible.role: Accessible.Heading
            }
            Flow {
                width: parent.width
                Accessible.role: Accessible.StaticText
                Accessible.name: average.text + tab.model.averageWords

                StyledText {
                    id: average

                    text: "Average words per recording: "
                    color: Theme.secondary
                    Accessible.ignored: true
                }
                StyledText {
                    text: tab.model.averageWords
                    style: Theme.prominentButton
                    Accessible.ignored: true
                }
            }
        }
    }
    RowLayout {
        spacing: 12

        UsagePanel {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            title: "Top Destination Apps"
            emptyText: "No destination app activity yet."
            rows: tab.model.topApplications
        }
        UsagePanel {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredWidth: 1
            title: "Hotbar Slot Usage"
            emptyText: "No assigned hotbar apps yet."
            rows: tab.model.slotUsage
        }
    }
}
