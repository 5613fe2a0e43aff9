import QtQuick
import Kestrova.Primitives

// A rounded surface around its content.
Rectangle {
    id: card

    property int tone: SurfaceCardTone.Standard
    // A wash over a standard card; the other tones ignore it.
    property color tint: "transparent"
    property real padding: 12
    default property alias content: body.data

    readonly property bool isTinted: tone === SurfaceCardTone.Standard && tint.a > 0

    // Of the content's wish, not of its present size, which follows the card's own.
    implicitWidth: (body.children[0]?.implicitWidth ?? 0) + 2 * padding
    implicitHeight: (body.children[0]?.implicitHeight ?? 0) + 2 * padding
    radius: Theme.cornerCard
    color: isTinted ? Qt.tint(Theme.control, Theme.wash(tint, 0.1)) : background()
    border.width: 1
    border.color: outline()

    function background(): color {
        switch (tone) {
        case SurfaceCardTone.Warning:
            return Theme.fill(Theme.orangeWash, 0.09);
        case SurfaceCardTone.Danger:
            return Theme.fill(Theme.redWash, 0.09);
        default:
            return Theme.control;
        }
    }

    function outline(): color {
        switch (tone) {
        case SurfaceCardTone.Warning:
            return Theme.fill(Theme.orangeWash, 0.3);
        case SurfaceCardTone.Danger:
            return Theme.fill(Theme.redWash, 0.35);
        default:
            return Theme.border;
        }
    }

    Item {
        id: body

        anchors.fill: parent
        anchors.margins: card.padding
    }
}
