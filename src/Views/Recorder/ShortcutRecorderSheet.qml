import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Recorder

// The sheet in which the user presses a shortcut. Open while its recorder is.
Sheet {
    id: sheet

    required property ShortcutRecorder recorder
    readonly property ShortcutCapture capture: recorder.capture

    title: "Record Shortcut"
    visible: recorder.isOpen
    onAboutToShow: capture.start(parent.Window.window)

    contentItem: ColumnLayout {
        spacing: 14

        StyledText {
            Layout.fillWidth: true
            text: sheet.title
            style: Theme.title2
            Accessible.role: Accessible.Heading
        }
        StyledText {
            Layout.fillWidth: true
            text: "Include at least one modifier key (Command, Option, Shift, or Control)."
            style: Theme.wrappingBody
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 72
            radius: Theme.cornerCard
            color: Theme.fill(Theme.grey, 0.12)

            StyledText {
                anchors.centerIn: parent
                text: sheet.capture.displayText
                style: Theme.title3
                color: sheet.capture.isCaptured ? Theme.primary : Theme.secondary
            }
        }
        StyledText {
            Layout.fillWidth: true
            text: sheet.capture.message
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: 8

            PushButton {
                text: "Cancel"
                onClicked: sheet.capture.cancel()
            }
            PushButton {
                text: "Save"
                prominent: true
                enabled: sheet.capture.isCaptured
                onClicked: sheet.capture.save()
            }
        }
    }
}
