import QtQuick
import QtQuick.Layouts

// A label and, at the far end of the row, its value.
RowLayout {
    id: row

    required property string label
    required property string value
    property bool monospaced: false
    property color valueColor: Theme.primary

    spacing: 8

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
