import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// Something that the user should know, while there is something.
SurfaceCard {
    id: card

    required property string text

    visible: text.length > 0
    tone: SurfaceCardTone.Warning

    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

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
            text: card.text
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
}
