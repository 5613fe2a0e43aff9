import QtQuick

// Size, weight and line height of one text style.
QtObject {
    required property real size
    required property real line
    required property real scale
    property int weight: Font.Normal
    property real tracking: 0
    property bool monospaced: false

    readonly property int lineHeight: Math.round(line * scale)
    readonly property font font: Qt.font({
        family: monospaced ? "JetBrains Mono" : size >= 20 ? "Inter Display" : "Inter",
        pixelSize: Math.round(size * scale),
        weight: weight,
        letterSpacing: tracking * scale
    })
}
