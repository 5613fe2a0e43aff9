import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Popover

// Shown once a dictation has all that it needs.
ColumnLayout {
    id: face

    required property PopoverModel model

    spacing: 12

    RowLayout {
        spacing: 8

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            StyledText {
                Layout.fillWidth: true
                text: "Kestrova"
                style: Theme.largeTitle
                Accessible.role: Accessible.Heading
            }
            StyledText {
                Layout.fillWidth: true
                text: "Local Voice Dictation"
                style: Theme.caption
                color: Theme.secondary
            }
        }
        StatusPill {
            status: face.model.status
        }
    }
    SurfaceCard {
        Layout.fillWidth: true

        ColumnLayout {
            width: parent.width
            spacing: 8

            MetricRow {
                Layout.fillWidth: true
                label: "Words Processed"
                value: face.model.wordsProcessed
                monospaced: true
            }
            MetricRow {
                Layout.fillWidth: true
                label: "Shortcut"
                value: face.model.shortcut
                valueColor: Theme.secondary
            }
        }
    }
    SurfaceCard {
        Layout.fillWidth: true
        visible: face.model.lacksPermission
        tone: SurfaceCardTone.Warning

        RowLayout {
            width: parent.width
            spacing: 8

            Symbol {
                name: "exclamationmark.triangle.fill"
                size: 16
                color: Theme.orange
            }
            StyledText {
                Layout.fillWidth: true
                text: "Grant microphone and accessibility permissions for reliable auto-paste."
                style: Theme.caption
                color: Theme.secondary
                wrapMode: Text.Wrap
            }
            PushButton {
                small: true
                text: "Fix"
                onClicked: face.model.openSettings()
            }
        }
    }
    NoticeCard {
        Layout.fillWidth: true
        text: face.model.microphoneNotice
    }
    PrimaryButton {
        Layout.alignment: Qt.AlignHCenter
        model: face.model
    }
    TranscriptCard {
        Layout.fillWidth: true
        visible: face.model.lastTranscript.length > 0
        transcript: face.model.lastTranscript
    }
    NoticeCard {
        Layout.fillWidth: true
        text: face.model.recordingNotice
    }
    DeliveryCard {
        Layout.fillWidth: true
        notice: face.model.deliveryNotice
        earlierTranscripts: face.model.unconfirmedTranscripts
        onCopyRequested: face.model.copyTranscript()
        onEarlierCopyRequested: place => face.model.copyUnconfirmedTranscript(place)
    }
    DangerCard {
        Layout.fillWidth: true
        text: face.model.lastError
        onCopyRequested: face.model.copyError()
    }
}
