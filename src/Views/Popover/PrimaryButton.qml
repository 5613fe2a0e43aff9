import QtQuick
import Kestrova.Primitives
import Kestrova.Popover

// Starts, ends or cancels a dictation. Round, with a symbol only; its tooltip is its name.
BaseButton {
    id: button

    required property PopoverModel model

    readonly property int look: model.primaryButtonLook
    readonly property color accented: look === PopoverModel.DisabledLook ? Theme.grey
                                      : look === PopoverModel.ProcessingLook ? Theme.orangeWash
                                      : Theme.accent

    implicitWidth: 30
    implicitHeight: 30
    enabled: !model.primaryButtonDisabled
    scale: down && !Theme.reducedMotion ? 0.94 : 1

    Accessible.name: model.primaryButtonTitle
    onClicked: model.handlePrimaryAction()

    Behavior on scale {
        NumberAnimation { duration: Theme.hoverFade }
    }
    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.model.primaryButtonIcon
            size: 14
            strokeWidth: 2.4
            color: button.symbolColor()
        }
    }
    background: Rectangle {
        radius: height / 2
        color: button.fillColor()
        border.width: 1
        border.color: Theme.wash(button.accented,
                                 Math.min(1, button.ringOpacity() * (button.hovered ? 2 : 1)))

        Behavior on border.color {
            ColorAnimation { duration: Theme.hoverFade }
        }
        FocusRing {
            visible: button.visualFocus
            controlRadius: parent.radius
        }
    }

    function symbolColor(): color {
        switch (look) {
        case PopoverModel.DisabledLook:
            return Theme.wash(Theme.secondary, 0.6);
        case PopoverModel.RecordingLook:
            return Theme.onFill;
        case PopoverModel.ProcessingLook:
            return Theme.primary;
        default:
            return Theme.accent;
        }
    }

    function fillColor(): color {
        switch (look) {
        case PopoverModel.DisabledLook:
            return Theme.fill(accented, 0.08);
        case PopoverModel.RecordingLook:
            return accented;
        case PopoverModel.ProcessingLook:
            return Theme.fill(accented, 0.18);
        default:
            return Theme.fill(accented, 0.14);
        }
    }

    function ringOpacity(): real {
        switch (look) {
        case PopoverModel.DisabledLook:
            return 0.2;
        case PopoverModel.RecordingLook:
            return 0.75;
        case PopoverModel.ProcessingLook:
            return 0.3;
        default:
            return 0.28;
        }
    }

    Tip {
        text: button.model.primaryButtonTitle
        visible: button.hovered || button.visualFocus
    }
}
