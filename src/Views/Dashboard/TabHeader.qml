import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// The heading of a tab and what explains it.
ColumnLayout {
    id: header

    required property string title
    property string subtitle

    spacing: 2

    StyledText {
        Layout.fillWidth: true
        text: header.title
        style: Theme.title
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    StyledText {
        Layout.fillWidth: true
        visible: header.subtitle.length > 0
        text: header.subtitle
        style: Theme.wrappingBody
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
}
