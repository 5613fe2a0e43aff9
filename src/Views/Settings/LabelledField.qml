import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// A text field under its label.
ColumnLayout {
    id: row

    required property string label
    required property string value
    property bool monospaced: false
    signal edited(string text)

    spacing: 4

    StyledText {
        text: row.label
        style: Theme.caption
        color: Theme.secondary
        Accessible.ignored: true
    }
    TextInputField {
        Layout.fillWidth: true
        label: row.label
        value: row.value
        font: row.monospaced ? Theme.code.font : Theme.body.font
        onEdited: text => row.edited(text)
    }
}
