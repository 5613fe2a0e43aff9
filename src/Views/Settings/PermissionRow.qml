import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// What the program may do, and the way to be allowed it.
RowLayout {
    id: row

    required property string title
    required property bool granted
    required property string actionTitle
    signal action

    spacing: 10

    StyledText {
        Layout.fillWidth: true
        text: row.title
        style: Theme.button
    }
    StatusPill {
        text: row.granted ? "Granted" : "Not Granted"
        tone: row.granted ? StatusPillTone.Success : StatusPillTone.Warning
        icon: row.granted ? "checkmark" : "exclamationmark"
        Accessible.name: row.title + ": " + text
    }
    PushButton {
        small: true
        text: row.actionTitle
        Accessible.description: row.title
        onClicked: row.action()
    }
}
