pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Dashboard

ColumnLayout {
    id: tab

    required property DashboardModel model

    spacing: 8

    TabHeader {
        Layout.fillWidth: true
        Layout.bottomMargin: 8
        title: "Hotbar App Assignment"
        subtitle: tab.model.hotbarExplanation
    }
    PushButton {
        text: "Configure Shortcuts"
        visible: tab.model.configuresShortcuts
        onClicked: tab.model.configureShortcuts()
    }
    // Why a slot could not be assigned, or a shortcut not be taken.
    DangerCard {
        Layout.fillWidth: true
        text: tab.model.lastError
        onCopyRequested: tab.model.copyError()
    }
    Repeater {
        model: tab.model.slotCount

        HotbarSlotCard {
            required property int index

            Layout.fillWidth: true
            slot: tab.model.hotbarSlots[index]
            canAssign: tab.model.canAssign
            recordsShortcuts: tab.model.recordsShortcuts
            onAssignRequested: tab.model.assignFrontmost(slot.slotIndex)
            onRecordRequested: tab.model.recordShortcut(slot.slotIndex)
            onResetRequested: tab.model.resetShortcut(slot.slotIndex)
            onClearRequested: tab.model.clear(slot.slotIndex)
        }
    }
}
