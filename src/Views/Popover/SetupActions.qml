import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Popover

// The ways to get what is missing.
ColumnLayout {
    id: actions

    required property PopoverModel model

    spacing: 8

    PushButton {
        Layout.fillWidth: true
        prominent: true
        symbol: "square.and.arrow.down"
        text: actions.model.modelButtonTitle
        busy: actions.model.isPreparingModel
        enabled: !actions.model.isPreparingModel
        onClicked: actions.model.downloadModel()
    }
    ProgressRow {
        Layout.fillWidth: true
        Layout.leftMargin: 2
        Layout.rightMargin: 2
        visible: actions.model.download.amount.length > 0
        label: actions.model.modelButtonTitle
        status: actions.model.download
    }
    PushButton {
        visible: !actions.model.toolStep.isComplete
        text: "Install whisper.cpp via Homebrew"
        onClicked: actions.model.installWhisperCpp()
    }
    Flow {
        Layout.fillWidth: true
        spacing: 8
        visible: !actions.model.microphoneStep.isComplete || actions.model.canGrantAccessibility

        PushButton {
            visible: !actions.model.microphoneStep.isComplete
            text: "Grant Microphone"
            onClicked: actions.model.grantMicrophone()
        }
        PushButton {
            visible: actions.model.canGrantAccessibility
            text: "Grant Accessibility"
            onClicked: actions.model.grantAccessibility()
        }
    }
}
