import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Popover

// Shown as long as the model or the tool is missing.
ColumnLayout {
    id: face

    required property PopoverModel model

    spacing: 12

    SectionHeader {
        Layout.fillWidth: true
        title: "Setup Needed"
        subtitle: "Complete setup before recording"
    }
    SurfaceCard {
        Layout.fillWidth: true

        ColumnLayout {
            width: parent.width
            spacing: 10

            SetupStepRow {
                title: face.model.modelStep.title
                detail: face.model.modelStep.detail
                isComplete: face.model.modelStep.isComplete
            }
            SetupStepRow {
                title: face.model.toolStep.title
                detail: face.model.toolStep.detail
                isComplete: face.model.toolStep.isComplete
                isDetailSelectable: true
            }
            SetupStepRow {
                title: face.model.microphoneStep.title
                detail: face.model.microphoneStep.detail
                notice: face.model.microphoneNotice
                isComplete: face.model.microphoneStep.isComplete
            }
            SetupStepRow {
                title: face.model.accessibilityStep.title
                detail: face.model.accessibilityStep.detail
                isComplete: face.model.accessibilityStep.isComplete
            }
        }
    }
    SurfaceCard {
        Layout.fillWidth: true

        SetupActions {
            width: parent.width
            model: face.model
        }
    }
    DangerCard {
        Layout.fillWidth: true
        text: face.model.lastError
        onCopyRequested: face.model.copyError()
    }
}
