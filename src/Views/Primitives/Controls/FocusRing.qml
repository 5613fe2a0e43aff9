import QtQuick

// The ring around a control that has the keyboard; its parent is the control.
Rectangle {
    property real distance: 2
    property real controlRadius: Theme.cornerCard

    anchors.fill: parent
    anchors.margins: -distance - border.width
    radius: controlRadius + distance + border.width
    color: "transparent"
    border.color: Theme.focus
    border.width: 2
}
