import QtQuick
import QtQuick.Layouts

// A label and, at the far end of the row, its value. Large type puts one under the other.
GridLayout {
    id: row

    required property string label
    required property string value
    property bool monospaced: false
    property color valueColor: Theme.primary

    columns: Theme.largeType ? 1 : 2
    columnSpacing: 8
    rowSpacing: 2

    StyledText {
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignBaseline
        text: row.label
        color: Theme.secondary
    }
    StyledText {
        Layout.alignment: Qt.AlignBaseline
        text: row.value
        style: row.monospaced ? Theme.bodyMonospaced : Theme.body
        color: row.valueColor
    }
}
