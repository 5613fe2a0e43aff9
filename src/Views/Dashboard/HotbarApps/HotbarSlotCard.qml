import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Dashboard

// A slot of the hotbar: its application, its shortcut, and what can be done with them. Where the
// buttons do not fit beside the rest they stand below it, at the trailing edge.
SurfaceCard {
    id: card

    required property hotbarSlotRow slot
    property bool canAssign: true
    property bool recordsShortcuts: true
    signal assignRequested
    signal recordRequested
    signal resetRequested
    signal clearRequested

    readonly property real leastNameWidth: 120
    readonly property bool isStacked: width - 2 * padding < tile.width + leastNameWidth
                                      + chip.implicitWidth + buttons.implicitWidth + 3 * 12

    padding: 12

    GridLayout {
        width: parent.width
        columns: card.isStacked ? 1 : 2
        columnSpacing: 16
        rowSpacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 12

            SlotTile {
                id: tile

                initial: card.slot.initial
            }
            ColumnLayout {
                spacing: 2

                StyledText {
                    text: card.slot.title
                    style: Theme.headline
                    Accessible.role: Accessible.Heading
                }
                NameText {
                    Layout.fillWidth: true
                    text: card.slot.appName
                    style: Theme.callout
                    color: Theme.secondary
                }
                StyledText {
                    Layout.fillWidth: true
                    text: card.slot.shortcutHint
                    style: Theme.caption
                    visible: text.length > 0
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.AlertMessage
                }
            }
            Rectangle {
                id: chip

                implicitWidth: shortcut.implicitWidth + 16
                implicitHeight: shortcut.implicitHeight + 4
                radius: Theme.cornerSegment
                color: Theme.fill(Theme.grey, 0.12)

                StyledText {
                    id: shortcut

                    anchors.centerIn: parent
                    text: card.slot.shortcut
                    style: Theme.callout
                    color: Theme.secondary
                }
            }
        }
        RowLayout {
            id: buttons

            Layout.alignment: Qt.AlignRight
            spacing: 8

            PushButton {
                id: assign

                text: "Assign Frontmost"
                prominent: true
                enabled: card.canAssign
                Accessible.description: card.slot.title
                onClicked: card.assignRequested()
            }
            PushButton {
                text: "Record Shortcut"
                visible: card.recordsShortcuts
                Accessible.description: card.slot.title
                onClicked: card.recordRequested()
            }
            PushButton {
                text: "Reset Shortcut"
                visible: card.recordsShortcuts
                Accessible.description: card.slot.title
                onClicked: card.resetRequested()
            }
            // Its place is kept, so that the buttons of all slots line up.
            Item {
                implicitWidth: clear.implicitWidth
                implicitHeight: clear.implicitHeight

                PushButton {
                    id: clear

                    text: "Clear"
                    visible: card.slot.isAssigned
                    Accessible.description: card.slot.title
                    onClicked: {
                        assign.forceActiveFocus(focusReason);
                        card.clearRequested();
                    }
                }
            }
        }
    }
}
