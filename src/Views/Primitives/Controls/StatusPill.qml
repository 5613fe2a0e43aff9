import QtQuick
import Kestrova.Primitives

// A coloured label; never something to click.
Rectangle {
    id: pill

    required property pillStatus status

    readonly property color textColor: status.tone === StatusPillTone.Neutral ? Theme.primary : Theme.onFill

    implicitWidth: Math.ceil(row.implicitWidth) + 16
    implicitHeight: row.implicitHeight + 6
    radius: height / 2
    color: fillColor()

    Accessible.role: Accessible.StaticText
    Accessible.name: status.text

    function fillColor(): color {
        switch (status.tone) {
        case StatusPillTone.Success:
            return Theme.greenFill;
        case StatusPillTone.Warning:
            return Theme.orangeFill;
        case StatusPillTone.Danger:
            return Theme.redFill;
        case StatusPillTone.Recording:
            return Theme.accent;
        default:
            return Theme.fill(Theme.grey, 0.16);
        }
    }

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 4

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: pill.status.icon.length > 0
            name: pill.status.icon
            size: 9
            color: pill.textColor
        }
        StyledText {
            text: pill.status.text
            style: Theme.pill
            color: pill.textColor
            Accessible.ignored: true
        }
    }
}
