import QtQuick
import QtQuick.Templates as T

// Lies over the content; shown while there is something to see by it.
T.ScrollBar {
    id: bar

    property bool alwaysShown: false
    readonly property bool isWide: hovered || pressed

    implicitWidth: 16
    implicitHeight: 16
    padding: 4
    minimumSize: 20 / Math.max(20, vertical ? height : width)
    visible: size < 1
    hoverEnabled: true

    contentItem: Item {
        implicitWidth: 8
        implicitHeight: 8

        Rectangle {
            readonly property int thickness: bar.isWide ? 8 : 6

            x: bar.vertical ? parent.width - width : 0
            y: bar.vertical ? 0 : parent.height - height
            width: bar.vertical ? thickness : parent.width
            height: bar.vertical ? parent.height : thickness
            radius: thickness / 2
            color: Theme.wash(Theme.grey, 0.55)
            opacity: bar.alwaysShown || bar.active || bar.isWide ? 1 : 0

            Behavior on opacity {
                NumberAnimation { duration: Theme.fadeIn }
            }
        }
    }
}
