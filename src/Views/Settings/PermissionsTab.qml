import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Settings

ColumnLayout {
    id: tab

    required property SettingsModel model

    SettingsCard {
        Layout.fillWidth: true

        PermissionRow {
            title: "Microphone"
            status: tab.model.microphoneStatus
            actionTitle: "Request"
            onAction: tab.model.requestMicrophone()
        }
        ColumnLayout {
            visible: !tab.model.isMicrophoneGranted
            spacing: 4

            SelectableText {
                Layout.fillWidth: true
                text: tab.model.microphoneMessage
                style: Theme.caption
                color: Theme.secondary
                wrapMode: TextEdit.Wrap
            }
            SelectableText {
                Layout.fillWidth: true
                visible: text.length > 0
                text: tab.model.microphoneHint
                style: Theme.caption
                color: Theme.secondary
                wrapMode: TextEdit.Wrap
            }
        }
        NoticeCard {
            Layout.fillWidth: true
            text: tab.model.microphoneNotice
        }
        Divider {
            Layout.fillWidth: true
            Layout.topMargin: 4
            Layout.bottomMargin: 4
        }
        PermissionRow {
            title: "Accessibility"
            status: tab.model.accessibilityStatus
            available: tab.model.isAccessibilityAvailable
            actionTitle: "Open Prompt"
            onAction: tab.model.promptForAccessibility()
        }
        StyledText {
            Layout.fillWidth: true
            text: tab.model.accessibilityExplanation
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
}
