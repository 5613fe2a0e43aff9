import QtQuick
import Kestrova.Primitives

// What the mark that is pointed at says. No popup, so that the pointer passes through it.
Rectangle {
    id: readOut

    required property string text

    width: label.implicitWidth + 16
    height: label.implicitHeight + 10
    radius: Theme.cornerField
    color: Theme.tip
    border.width: 1
    border.color: Theme.overlayBorder
    opacity: text.length > 0 ? 1 : 0

    onTextChanged: {
        if (text.length > 0)
            label.text = text;
    }

    Shadow {
        anchors.fill: parent
        anchors.margins: -margin
        z: -1
        margin: 32
        blur: 24
        drop: 8
        color: Theme.overlayShadow
    }
    // The last text stays while it fades.
    StyledText {
        id: label

        anchors.centerIn: parent
        style: Theme.tooltip
        Accessible.ignored: true
    }
    Behavior on opacity {
        NumberAnimation { duration: Theme.fadeOut }
    }
}
