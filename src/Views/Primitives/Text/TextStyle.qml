import QtQuick

// Size, weight and line height of one text style.
QtObject {
    required property int size
    required property int lineHeight
    property int weight: Font.Normal
    property real tracking: 0
    property bool monospaced: false

    readonly property font font: Qt.font({
        family: monospaced ? "JetBrains Mono" : size >= 20 ? "Inter Display" : "Inter",
        pixelSize: size,
        weight: weight,
        letterSpacing: tracking
    })
}
