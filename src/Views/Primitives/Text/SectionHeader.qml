import QtQuick

// A title over its subtitle. Not a layout, which would stay apart when a text of more lines than it
// needs in the end becomes shorter, as while a window is built.
Column {
    id: header

    required property string title
    property string subtitle
    property TextStyle titleStyle: Theme.headline
    property TextStyle subtitleStyle: Theme.caption

    spacing: 2

    StyledText {
        width: header.width > 0 ? header.width : implicitWidth
        text: header.title
        style: header.titleStyle
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    StyledText {
        width: header.width > 0 ? header.width : implicitWidth
        visible: header.subtitle.length > 0
        text: header.subtitle
        style: header.subtitleStyle
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
}
