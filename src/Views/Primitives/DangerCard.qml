import QtQuick
import Kestrova.Primitives

// An error: its first lines, all of it by scrolling, and a button that copies it.
SurfaceCard {
    id: card

    required property string text
    signal copyRequested

    readonly property int visibleLines: 8
    readonly property bool isLong: message.lineCount > 2

    tone: SurfaceCardTone.Danger
    implicitHeight: Math.min(message.implicitHeight, visibleLines * Theme.caption.lineHeight) + 2 * padding
    visible: text.length > 0

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    ScrollPane {
        anchors.fill: parent
        anchors.rightMargin: card.isLong ? 34 - card.padding + 8 : 0
        contentHeight: message.implicitHeight
        alwaysShowsBar: true

        SelectableText {
            id: message

            width: parent.width
            text: card.text
            style: Theme.caption
            wrapMode: TextEdit.Wrap
        }
    }
    IconButton {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.rightMargin: 8 - card.padding
        anchors.topMargin: 8 - card.padding
        visible: card.isLong
        symbol: "doc.on.doc"
        tip: "Copy error"
        onClicked: card.copyRequested()
    }
}
