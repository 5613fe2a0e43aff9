import QtQuick
import Kestrova.Primitives

// An error: its first lines, all of it by scrolling, and a button that copies it.
SurfaceCard {
    id: card

    required property string text
    signal copyRequested

    readonly property int visibleLines: 8
    readonly property bool isLong: firstLines.truncated

    tone: SurfaceCardTone.Danger
    implicitWidth: 0
    implicitHeight: Math.min(message.implicitHeight, visibleLines * Theme.caption.lineHeight) + 2 * padding
    visible: text.length > 0

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    // Tells how long the text is apart from the room that the button takes.
    StyledText {
        id: firstLines

        width: parent.width
        visible: false
        text: card.text
        style: Theme.caption
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
    }
    // Reaches to the card's edge, where its scroll bar is.
    ScrollPane {
        anchors.fill: parent
        anchors.rightMargin: -card.padding
        contentHeight: message.implicitHeight
        alwaysShowsBar: true
        barInset: card.isLong ? 34 - card.padding : 0

        SelectableText {
            id: message

            width: parent.width - card.padding - (card.isLong ? 34 : 0)
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
