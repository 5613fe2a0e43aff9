import QtQuick

// Text in one of the theme's styles; a line of it is at least as tall as the style says.
Text {
    property TextStyle style: Theme.body

    color: Theme.primary
    font: style.font
    lineHeight: style.lineHeight
    lineHeightMode: Text.FixedHeight
    verticalAlignment: Text.AlignVCenter
    textFormat: Text.PlainText
    linkColor: Theme.primary

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text.length === 0
}
