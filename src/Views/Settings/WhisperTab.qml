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
            title: "Runtime"
            subtitle: "Pinned to a deterministic whisper.cpp commit"
        }
        RowLayout {
            spacing: 8

            StyledText {
                Layout.fillWidth: true
                text: "Runtime status"
                color: Theme.secondary
            }
            StatusPill {
                status: tab.model.toolStatus
            }
        }
        RowLayout {
            spacing: 8

            StyledText {
                text: "Pinned commit"
                color: Theme.secondary
            }
            SelectableText {
                Layout.fillWidth: true
                text: tab.model.pinnedCommit
                style: Theme.code
                horizontalAlignment: TextEdit.AlignRight
                wrapMode: TextEdit.WrapAnywhere
            }
        }
        RowLayout {
            spacing: 8

            StyledText {
                text: "Resolved CLI path"
                color: Theme.secondary
            }
            SelectableText {
                Layout.fillWidth: true
                text: tab.model.resolvedWhisperCLIPath
                style: Theme.caption
                color: Theme.secondary
                horizontalAlignment: TextEdit.AlignRight
                wrapMode: TextEdit.WrapAnywhere
            }
        }
    }
    SettingsCard {
        Layout.fillWidth: true

        SectionHeader {
            Layout.fillWidth: true
            title: "Configuration"
            subtitle: "Install tip: brew install whisper-cpp"
        }
        TextInputField {
            Layout.fillWidth: true
            label: placeholderText
            placeholderText: "whisper-cli path"
            value: tab.model.whisperCLIPath
            onEdited: text => tab.model.whisperCLIPath = text
        }
        Divider {
            Layout.fillWidth: true
            Layout.topMargin: 4
            Layout.bottomMargin: 4
        }
        SectionHeader {
            Layout.fillWidth: true
            title: "Accuracy Controls"
            subtitle: "Fixed language and stronger decoding usually improve transcript quality"
        }
        TextInputField {
            Layout.fillWidth: true
            label: placeholderText
            placeholderText: "Language code (auto, en, es, fr...)"
            value: tab.model.transcriptionLanguage
            onEdited: text => tab.model.transcriptionLanguage = text
        }
        SegmentedPicker {
            caption: "Decoding profile"
            choices: ["Balanced", "Accurate"]
            currentIndex: tab.model.decodingProfile
            onChosen: index => tab.model.decodingProfile = index
        }
        StyledText {
            Layout.fillWidth: true
            text: tab.model.decodingProfile === SettingsModel.Accurate
                  ? "Slower decode with stronger search and non-speech suppression."
                  : "Default decoding speed and quality."
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
        Flow {
            Layout.fillWidth: true
            spacing: 8

            PushButton {
                small: true
                text: "Use Auto Detect"
                onClicked: tab.model.transcriptionLanguage = "auto"
            }
            PushButton {
                small: true
                text: "Use English"
                onClicked: tab.model.transcriptionLanguage = "en"
            }
        }
        Flow {
            Layout.fillWidth: true
            Layout.topMargin: 4
            spacing: 8

            PushButton {
                text: "Install via Homebrew"
                onClicked: tab.model.installWhisperCpp()
            }
            PushButton {
                prominent: true
                text: "Re-check CLI"
                onClicked: tab.model.refresh()
            }
        }
    }
}
