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
            granted: tab.model.isMicrophoneGranted
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
            granted: tab.model.isAccessibilityGranted
            available: tab.model.isAccessibilityAvailable
            actionTitle: "Open Prompt"
            onAction: tab.model.promptForAccessibility()
        }
        StyledText {
            Layout.fillWidth: true
            text: tab.model.isAccessibilityAvailable
                  ? "Accessibility permission is required for reliable auto-paste into your active app."
                  : "This desktop does not let programs observe the keyboard and paste into other "
                    + "applications."
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
}
