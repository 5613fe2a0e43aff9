import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// How far long work has come: a bar over the amount and the percentage.
ColumnLayout {
    id: row

    required property string label
    required property progressStatus status

    spacing: 6

    Accessible.role: Accessible.ProgressBar
    Accessible.name: label
    Accessible.description: status.percentage.length > 0 ? status.amount + ", " + status.percentage
                                                           : status.amount

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 4
        radius: 2
        visible: row.status.fraction >= 0
        color: Theme.fill(Theme.grey, 0.18)

        Rectangle {
            width: Math.max(height, parent.width * Math.min(1, row.status.fraction))
            height: parent.height
            radius: 2
            visible: row.status.fraction > 0
            color: Theme.accent
        }
    }
    RowLayout {
        StyledText {
            Layout.fillWidth: true
            text: row.status.amount
            style: Theme.caption
            color: Theme.secondary
            Accessible.ignored: true
        }
        StyledText {
            text: row.status.percentage
            style: Theme.caption
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
}
