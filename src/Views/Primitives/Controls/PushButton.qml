import QtQuick
import Kestrova.Primitives

// The program's button: bordered, or prominent for the one action that a place is about.
BaseButton {
    id: control

    property bool prominent: false
    property bool small: false
    // Work is under way: not to be pressed, but legible.
    property bool busy: false
    property string symbol
    property string tip
    property TextStyle style: small ? Theme.smallButton
                              : prominent ? Theme.prominentButton : Theme.button

    readonly property bool isOff: !enabled && !busy
    readonly property color foreground: isOff ? Theme.wash(Theme.secondary, 0.55)
                                        : busy ? Theme.secondary
                                        : prominent ? Theme.onFill : Theme.primary

    leftPadding: small ? 10 : 12
    rightPadding: leftPadding
    implicitWidth: Math.ceil(contentItem.implicitWidth) + leftPadding + rightPadding
    implicitHeight: Math.max(small ? 22 : 28, contentItem.implicitHeight + 6)

    Accessible.name: text
    Accessible.description: tip

    contentItem: Item {
        implicitWidth: label.implicitWidth
        implicitHeight: label.implicitHeight

        Row {
            id: label

            anchors.centerIn: parent
            spacing: 6

            BusyIndicator {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.busy
            }
            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.symbol.length > 0 && !control.busy
                name: control.symbol
                size: 14
                strokeWidth: 2.4
                color: control.foreground
            }
            StyledText {
                text: control.text
                style: control.style
                color: control.foreground
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.cornerCard
        color: control.fillColor()
        border.width: control.prominent && control.enabled ? 0 : 1
        border.color: Theme.highContrast ? Theme.border : Theme.wash(Theme.primary, 0.07)

        Behavior on color {
            ColorAnimation { duration: Theme.hoverFade }
        }
        FocusRing {
            visible: control.visualFocus
        }
    }

    function fillColor(): color {
        if (busy)
            return Theme.fill(Theme.grey, 0.14);
        if (!enabled)
            return Theme.fill(Theme.grey, 0.1);
        if (prominent)
            return down ? Theme.accentPressed : hovered ? Theme.accentHover : Theme.accent;
        return Theme.fill(Theme.grey, down ? 0.38 : hovered ? 0.26 : 0.16);
    }

    Tip {
        text: control.tip
        visible: control.tip.length > 0 && (control.hovered || control.visualFocus)
    }
}
