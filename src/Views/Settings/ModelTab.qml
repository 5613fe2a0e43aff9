import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Settings

ColumnLayout {
    id: tab

    required property SettingsModel model

    spacing: 12

    StyledText {
        Layout.fillWidth: true
        text: "v1 stays fully local: audio and transcripts do not leave your machine."
        style: Theme.caption
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
    SettingsCard {
        Layout.fillWidth: true

        SectionHeader {
            Layout.fillWidth: true
            title: "Model"
            subtitle: "Model is cached locally for offline transcription"
        }
        LabelledField {
            Layout.fillWidth: true
            label: "Download URL"
            value: tab.model.modelDownloadURL
            onEdited: text => tab.model.modelDownloadURL = text
        }
        LabelledField {
            Layout.fillWidth: true
            label: "SHA256 checksum"
            monospaced: true
            value: tab.model.modelSHA256
            onEdited: text => tab.model.modelSHA256 = text
        }
        StyledText {
            Layout.fillWidth: true
            text: "Add SHA256 to enforce deterministic model verification."
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
        RowLayout {
            spacing: 8

            StatusPill {
                status: tab.model.modelStatus
            }
            Item {
                Layout.fillWidth: true
            }
            PushButton {
                prominent: true
                busy: tab.model.isPreparingModel
                enabled: !busy
                text: busy ? "Downloading..." : "Download / Verify"
                onClicked: tab.model.downloadModel()
            }
        }
        ProgressRow {
            Layout.fillWidth: true
            visible: tab.model.isPreparingModel && tab.model.download.amount.length > 0
            label: "Model download"
            status: tab.model.download
        }
    }
    SettingsCard {
        Layout.fillWidth: true

        SectionHeader {
            Layout.fillWidth: true
            title: "Accuracy Presets"
            subtitle: "Higher quality models trade speed for accuracy"
        }
        Flow {
            Layout.fillWidth: true
            spacing: 8

            PushButton {
                small: true
                text: "Base"
                onClicked: tab.model.usePreset(SettingsModel.BaseModel)
            }
            PushButton {
                small: true
                text: "Medium"
                onClicked: tab.model.usePreset(SettingsModel.MediumModel)
            }
            PushButton {
                small: true
                text: "Large-v3"
                onClicked: tab.model.usePreset(SettingsModel.LargeV3Model)
            }
        }
    }
}
