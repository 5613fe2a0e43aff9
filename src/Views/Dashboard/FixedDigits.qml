pragma ComponentBehavior: Bound

import QtQuick
import Kestrova.Primitives

// A number whose digits all have the same width, so that it stands still while it counts and lines
// up with those above it. (Text has no way to ask a font for its digits of one width.)
Row {
    id: digits

    required property string text
    property TextStyle style: Theme.body
    property color color: Theme.primary

    // Each digit, and what stands between digits in one.
    readonly property list<string> pieces: text.match(/\d|\D+/g) ?? []
    readonly property real digitWidth: Math.round(Math.max(...Array.from("0123456789", digit => metrics.advanceWidth(digit))))

    LayoutMirroring.enabled: false
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    FontMetrics {
        id: metrics

        font: digits.style.font
    }
    Repeater {
        model: digits.pieces.length

        StyledText {
            required property int index
            readonly property bool isDigit: text >= "0" && text <= "9"

            width: isDigit ? digits.digitWidth : implicitWidth
            text: digits.pieces[index] ?? ""
            style: digits.style
            color: digits.color
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
    }
}
