import QtQuick
import Kestrova.Primitives

// Text that can be selected and copied, by pointer or keyboard.
TextEdit {
    id: edit

    property TextStyle style: Theme.body

    font: style.font
    color: Theme.primary
    selectionColor: Theme.accent
    selectedTextColor: Theme.onFill
    readOnly: true
    selectByMouse: true
    textFormat: TextEdit.PlainText
    activeFocusOnTab: false

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Keys.onEscapePressed: event => {
        event.accepted = selectedText.length > 0;
        deselect();
    }
    onActiveFocusChanged: {
        if (!activeFocus)
            deselect();
    }

    TextLineHeight {
        document: edit.textDocument
        height: edit.style.lineHeight
    }
    HoverHandler {
        enabled: edit.selectByMouse
        cursorShape: Qt.IBeamCursor
    }
}
