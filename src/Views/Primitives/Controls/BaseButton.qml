import QtQuick
import QtQuick.Templates as T

// What all buttons have in common. Space, Return and Enter press it, once however long they are held.
T.Button {
    id: control

    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.onPressAction: if (control.enabled) control.clicked()
    Keys.onPressed: event => {
        const isReturn = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        event.accepted = isReturn || isRepeatedSpace(event);
        if (isReturn && !event.isAutoRepeat)
            clicked();
    }
    // X11 reports a held key as pressed and released again and again.
    Keys.onReleased: event => event.accepted = isRepeatedSpace(event)

    function isRepeatedSpace(event: KeyEvent): bool {
        return event.key === Qt.Key_Space && event.isAutoRepeat;
    }
}
