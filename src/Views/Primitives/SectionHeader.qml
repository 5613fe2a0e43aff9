import QtQuick
import QtQuick.Layouts

// A title over its subtitle. The title does not wrap: the layout would keep the room for the lines
// that it had while its width was not known.
ColumnLayout {
    id: header

    required property string title
    property string subtitle

    spacing: 2

    StyledText {
        Layout.fillWidth: true
        text: header.title
        style: Theme.headline
        elide: Text.ElideRight
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
