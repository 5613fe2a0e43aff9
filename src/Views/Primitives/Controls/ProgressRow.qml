import QtQuick
import QtQuick.Layouts

// How far long work has come: a bar over the amount and the percentage.
ColumnLayout {
    id: row

    required property string label
    required property string amount
    required property string percentage
    // 0 to 1; below 0: not known
    required property real fraction

    spacing: 6

    Accessible.role: Accessible.ProgressBar
    Accessible.name: label
    Accessible.description: percentage.length > 0 ? amount + ", " + percentage : amount

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 4
        radius: 2
        visible: row.fraction >= 0
        color: Theme.fill(Theme.grey, 0.18)

        Rectangle {
            width: Math.max(height, parent.width * Math.min(1, row.fraction))
            height: parent.height
            radius: 2
            visible: row.fraction > 0
            color: Theme.accent
        }
    }
    RowLayout {
        StyledText {
            Layout.fillWidth: true
            text: row.amount
            style: Theme.caption
            color: Theme.secondary
            Accessible.ignored: true
        }
        StyledText {
            text: row.percentage
            style: Theme.caption
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
}
