import QtQuick
import QtQuick.Layouts

ColumnLayout {
    id: header

    required property string title
    property string subtitle

    spacing: 2

    StyledText {
        Layout.fillWidth: true
        text: header.title
        style: Theme.headline
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    StyledText {
        Layout.fillWidth: true
        visible: header.subtitle.length > 0
        text: header.subtitle
        style: Theme.caption
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
}
