import QtQuick
import Kestrova.Primitives

// The name of an application on one line: cut in the middle where it is too long, whole in its
// tooltip then.
StyledText {
    id: name

    elide: Text.ElideMiddle

    HoverHandler {
        id: hover
    }
    Tip {
        text: name.text
        visible: hover.hovered && name.truncated
    }
}
