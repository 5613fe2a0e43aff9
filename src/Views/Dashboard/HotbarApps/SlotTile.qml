import QtQuick
import QtQuick.Shapes
import Kestrova.Primitives

// The application of a slot by its first letter; an outline where there is none.
Rectangle {
    id: tile

    required property string initial

    implicitWidth: 28
    implicitHeight: 28
    radius: Theme.cornerField
    color: initial.length > 0 ? Theme.fill(Theme.grey, 0.16) : "transparent"

    StyledText {
        anchors.centerIn: parent
        text: tile.initial
        style: Theme.prominentButton
        color: Theme.secondary
        Accessible.ignored: true
    }
    Shape {
        anchors.fill: parent
        visible: tile.initial.length === 0

        ShapePath {
            strokeColor: Theme.wash(Theme.grey, 0.5)
            strokeWidth: 1
            strokeStyle: ShapePath.DashLine
            dashPattern: [3, 2.5]
            fillColor: "transparent"

            PathSvg {
                path: "M8 .5H20A7.5 7.5 0 0 1 27.5 8V20A7.5 7.5 0 0 1 20 27.5H8A7.5 7.5 0 0 1 .5 20V8A7.5 7.5 0 0 1 8 .5Z"
            }
        }
    }
}
