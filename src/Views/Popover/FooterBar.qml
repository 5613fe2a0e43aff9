import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Popover

// What can be done on either face.
Rectangle {
    id: bar

    required property PopoverModel model

    implicitHeight: row.implicitHeight + 12
    radius: Theme.cornerCard
    color: Theme.control
    border.width: 1
    border.color: Theme.border

    Accessible.role: Accessible.ToolBar
    Accessible.name: "Kestrova"

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        spacing: 8

        PushButton {
            prominent: true
            symbol: "rectangle.grid.1x2"
            text: "Dashboard"
            tip: "Open Dashboard"
            style: Theme.footerButton
            onClicked: bar.model.openDashboard()
        }
        Item {
            Layout.fillWidth: true
        }
        IconButton {
            symbol: "arrow.clockwise"
            tip: "Refresh setup state"
            onClicked: bar.model.refresh()
        }
        IconButton {
            symbol: "gear"
            tip: "Open Settings"
            onClicked: bar.model.openSettings()
        }
        IconButton {
            symbol: "power"
            tip: "Quit Kestrova"
            onClicked: bar.model.quitRequested()
        }
    }
}
