import QtQuick
import QtQuick.Shapes

// A turning arc beside the text that says what is under way.
Item {
    id: indicator

    readonly property bool isSeen: visible && Window.visibility !== Window.Hidden
                                   && Window.visibility !== Window.Minimized

    implicitWidth: 14
    implicitHeight: 14
    Accessible.ignored: true

    Shape {
        anchors.fill: parent

        ShapePath {
            strokeColor: Theme.wash(Theme.accent, 0.3)
            strokeWidth: 2.2
            fillColor: "transparent"

            PathAngleArc {
                centerX: 7
                centerY: 7
                radiusX: 5.5
                radiusY: 5.5
                sweepAngle: 360
            }
        }
        ShapePath {
            strokeColor: Theme.accent
            strokeWidth: 2.2
            fillColor: "transparent"
            capStyle: ShapePath.RoundCap

            PathAngleArc {
                centerX: 7
                centerY: 7
                radiusX: 5.5
                radiusY: 5.5
                startAngle: -90
                sweepAngle: 110
            }
        }
        RotationAnimator on rotation {
            running: indicator.isSeen && !Theme.reducedMotion
            from: 0
            to: 360
            duration: Theme.spinnerTurn
            loops: Animation.Infinite
        }
    }
}
