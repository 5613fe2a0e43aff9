pragma ComponentBehavior: Bound

import QtQuick
import Kestrova.Primitives

Row {
    id: legend

    required property real cell
    required property list<color> colors

    spacing: 4

    StyledText {
        rightPadding: 4
        text: "Less"
        style: Theme.caption
        color: Theme.secondary
    }
    Repeater {
        model: legend.colors

        Rectangle {
            required property color modelData

            anchors.verticalCenter: parent.verticalCenter
            width: legend.cell
            height: legend.cell
            radius: 3
            color: modelData
            border.width: 0.5
            border.color: Theme.border
        }
    }
    StyledText {
        leftPadding: 4
        text: "More"
        style: Theme.caption
        color: Theme.secondary
    }
}
