import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// What the program may do, and the way to be allowed it.
RowLayout {
    id: row

    required property string title
    required property pillStatus status
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
        status: row.status
        Accessible.name: row.title + ": " + status.text
    }
    PushButton {
        visible: row.available
        small: true
        text: row.actionTitle
        Accessible.description: row.title
        onClicked: row.action()
    }
}
