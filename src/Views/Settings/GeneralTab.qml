import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Settings

ColumnLayout {
    id: tab

    required property SettingsModel model

    spacing: 12

    SettingsCard {
        Layout.fillWidth: true

        SectionHeader {
            Layout.fillWidth: true
            title: "Global Shortcut"
            subtitle: tab.model.recordsShortcuts ? "Default is Command + Shift + Space" : ""
        }
        MetricRow {
            Layout.fillWidth: true
            label: "Current"
            value: tab.model.shortcut
        }
        StyledText {
            Layout.fillWidth: true
            text: tab.model.shortcutHint
            style: Theme.caption
            visible: text.length > 0
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
        Flow {
            Layout.fillWidth: true
            spacing: 8

            PushButton {
                prominent: true
                text: "Record Shortcut"
                visible: tab.model.recordsShortcuts
                onClicked: tab.model.recordShortcut()
            }
            PushButton {
                text: "Reset to Default"
                visible: tab.model.recordsShortcuts
                onClicked: tab.model.resetShortcut()
            }
            PushButton {
                prominent: true
                text: "Configure Shortcuts"
                visible: tab.model.configuresShortcuts
                onClicked: tab.model.configureShortcuts()
            }
        }
        StyledText {
            Layout.fillWidth: true
            text: tab.model.shortcutTip
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
    SettingsCard {
        Layout.fillWidth: true

        SectionHeader {
            Layout.fillWidth: true
            title: "Appearance"
            subtitle: "Choose a fixed app theme"
        }
        SegmentedPicker {
            caption: "Theme"
            choices: ["Light", "Dark"]
            currentIndex: tab.model.theme
            onChosen: index => tab.model.theme = index
        }
    }
    SettingsCard {
        Layout.fillWidth: true

        SectionHeader {
            Layout.fillWidth: true
            title: "Navigation"
            subtitle: "Use Dashboard for hotbar app assignment and usage analytics"
        }
        PushButton {
            prominent: true
            text: "Open Dashboard"
            onClicked: tab.model.openDashboard()
        }
    }
}
