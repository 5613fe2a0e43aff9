import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Dashboard

// A name and its count over a bar that compares it with the others.
Column {
    id: bar

    required property usageRow row

    spacing: 6
    Accessible.role: Accessible.StaticText
    Accessible.name: row.name + ", " + row.count

    RowLayout {
        width: parent.width
        spacing: 8

        NameText {
            Layout.fillWidth: true
            text: bar.row.name
            Accessible.ignored: true
        }
        FixedDigits {
            text: bar.row.count
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
    Rectangle {
        width: parent.width
        height: 4
        radius: 2
        color: Theme.fill(Theme.grey, 0.18)

        Rectangle {
            anchors.left: parent.left
            width: bar.row.share > 0 ? Math.max(height, parent.width * bar.row.share) : 0
            height: parent.height
            radius: 2
            color: Theme.accent

            Behavior on width {
                enabled: !Theme.reducedMotion
                NumberAnimation { duration: Theme.chart; easing.type: Easing.OutCubic }
            }
        }
    }
}
