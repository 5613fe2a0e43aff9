import QtQuick
import Kestrova.Primitives
import Kestrova.Popover

// The panel under the tray item: one of the two faces over the footer.
PopoverWindow {
    id: window

    required property PopoverModel model

    readonly property int padding: 12
    readonly property bool isTranslucent: Appearance.compositing && !isOrdinary
    // 0 to 1 while it comes in.
    property real entry: 1

    title: "Kestrova"
    color: isTranslucent ? "transparent" : Theme.window
    margin: isTranslucent ? 72 : 0
    fullHeight: face.implicitHeight + separator.height + footer.implicitHeight + 4 * padding

    onOpening: {
        content.forceActiveFocus();
        pane.contentY = 0;
        // An opaque window would be empty first.
        if (isTranslucent)
            entering.restart();
    }

    NumberAnimation {
        id: entering

        target: window
        property: "entry"
        from: 0
        to: 1
        duration: Theme.fadeIn
        easing.type: Easing.OutCubic
    }
    Item {
        id: content

        width: parent.width
        height: parent.height
        x: Theme.reducedMotion ? 0 : (1 - window.entry) * window.entryOffset.x
        y: Theme.reducedMotion ? 0 : (1 - window.entry) * window.entryOffset.y
        opacity: window.entry
        focus: true
        Keys.onEscapePressed: window.model.dismissRequested()

        Shadow {
            anchors.fill: parent
            visible: window.isTranslucent
            margin: window.margin
            blur: 48
            drop: 18
            color: Theme.windowShadow
        }
        // The shadow's room is not the popover.
        TapHandler {
            onTapped: eventPoint => {
                if (!panel.contains(panel.mapFromItem(parent, eventPoint.position)))
                    window.model.dismissRequested();
            }
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
