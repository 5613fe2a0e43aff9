import QtQuick
import Kestrova.Primitives

// A button that shows a symbol only; its tooltip is its name.
BaseButton {
    id: control

    required property string symbol
    required property string tip

    implicitWidth: 26
    implicitHeight: 26

    Accessible.name: tip

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: control.symbol
            size: 13
            strokeWidth: 2.4
            color: !control.enabled ? Theme.wash(Theme.secondary, 0.4)
                   : control.hovered || control.down ? Theme.primary : Theme.secondary
        }
    }
    background: Rectangle {
        radius: Theme.cornerCard
        color: Theme.fill(Theme.grey, control.down ? 0.34 : control.hovered ? 0.24 : 0.1)

        Behavior on color {
            ColorAnimation { duration: Theme.hoverFade }
        }
        FocusRing {
            visible: control.visualFocus
        }
    }

    Tip {
        text: control.tip
        visible: control.hovered || control.visualFocus
    }
}
