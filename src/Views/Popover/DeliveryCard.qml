pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// That the last transcript may not have arrived, and those before it, each with a button that copies it.
SurfaceCard {
    id: card

    // Empty when nothing is to be said of the last one.
    required property string notice
    // Texts, the newest first.
    required property list<string> earlierTranscripts
    signal copyRequested
    signal earlierCopyRequested(place: int)

    tone: SurfaceCardTone.Warning
    visible: notice.length > 0 || earlierTranscripts.length > 0

    ColumnLayout {
        width: parent.width
        spacing: 6

        RowLayout {
            spacing: 8
            visible: card.notice.length > 0

            StyledText {
                Layout.fillWidth: true
                text: card.notice
                style: Theme.caption
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
            }
            PushButton {
                small: true
                text: "Copy"
                Accessible.name: "Copy last transcript"
                onClicked: card.copyRequested()
            }
        }
        StyledText {
            visible: card.earlierTranscripts.length > 0
            text: "Earlier, not confirmed"
            style: Theme.caption
            color: Theme.secondary
        }
        Repeater {
            model: card.earlierTranscripts

            RowLayout {
                id: row

                required property string modelData
                required property int index

                spacing: 8

                StyledText {
                    Layout.fillWidth: true
                    text: row.modelData.replace(/\s+/g, " ")
                    style: Theme.caption
                    elide: Text.ElideRight
                    maximumLineCount: 1
                }
                PushButton {
                    small: true
                    text: "Copy"
                    Accessible.name: "Copy earlier transcript"
                    Accessible.description: row.modelData
                    onClicked: card.earlierCopyRequested(row.index)
                }
            }
        }
    }
}
