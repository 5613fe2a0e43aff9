import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// What the program may do, and the way to be allowed it.
RowLayout {
    id: row

    required property string title
    required property bool granted
    property bool available: true
    required property string actionTitle
    signal action

    spacing: 10

    StyledText {
        Layout.fillWidth: true
        text: row.title
        style: Theme.button
    }
    StatusPill {
        text: row.granted ? "Granted" : row.available ? "Not Granted" : "Not Available"
        tone: row.granted ? StatusPillTone.Success : StatusPillTone.Warning
        icon: row.granted ? "checkmark" : "exclamationmark"
        Accessible.name: row.title + ": " + text
    }
    PushButton {
        visible: row.available
        small: true
        text: row.actionTitle
        Accessible.description: row.title
        onClicked: row.action()
    }
}
