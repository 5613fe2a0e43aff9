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
                step: face.model.modelStep
            }
            SetupStepRow {
                step: face.model.toolStep
                isDetailSelectable: true
            }
            SetupStepRow {
                step: face.model.microphoneStep
                notice: face.model.microphoneNotice
            }
            SetupStepRow {
                step: face.model.accessibilityStep
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
