import QtQuick
import Kestrova.Primitives
import Kestrova.Popover

// The panel under the tray item: one of the two faces over the footer.
PopoverWindow {
    id: window

    required property PopoverModel model

    readonly property int padding: 12

    title: "Kestrova"
    color: isTranslucent ? "transparent" : Theme.window
    isTranslucent: Appearance.compositing && !isOrdinary
    margin: isTranslucent ? 64 : 0
    fullHeight: face.implicitHeight + separator.height + footer.implicitHeight + 4 * padding

    Item {
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: window.model.dismissRequested()

        // The shadow's room is not the popover.
        TapHandler {
            enabled: window.isTranslucent
            onTapped: window.model.dismissRequested()
        }
        Rectangle {
            id: panel

            anchors.fill: parent
            anchors.margins: window.margin
            radius: window.isTranslucent ? Theme.cornerWindow : 0
            color: Theme.window
            border.width: window.isOrdinary ? 0 : 1
            border.color: Theme.overlayBorder

            Accessible.role: Accessible.Dialog
            Accessible.name: window.title

            ScrollPane {
                id: pane

                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.bottom: separator.top
                contentHeight: face.height + 2 * window.padding

                Item {
                    id: face

                    x: window.padding
                    y: window.padding
                    width: pane.width - 2 * window.padding
                    height: implicitHeight
                    implicitHeight: window.model.showsSetupExperience ? setup.implicitHeight
                                                                      : dictation.implicitHeight

                    SetupFace {
                        id: setup

                        width: parent.width
                        visible: window.model.showsSetupExperience
                        model: window.model
                    }
                    DictationFace {
                        id: dictation

                        width: parent.width
                        visible: !window.model.showsSetupExperience
                        model: window.model
                    }
                }
            }
            Divider {
                id: separator

                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: footer.top
                anchors.leftMargin: window.padding
                anchors.rightMargin: window.padding
                anchors.bottomMargin: window.padding
            }
            FooterBar {
                id: footer

                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                anchors.margins: window.padding
                model: window.model
            }
        }
    }
}
