import QtQuick
import QtQuick.Templates as T

// A line of text that is stored as it is typed. A new value from elsewhere replaces the text; one
// that the text has already does not, so that cursor and selection stay.
T.TextField {
    id: field

    required property string label
    required property string value
    signal edited(string text)

    implicitHeight: Math.max(28, contentHeight + 12)
    implicitWidth: 200
    leftPadding: 9
    rightPadding: 9
    font: Theme.body.font
    color: enabled ? Theme.primary : Theme.wash(Theme.primary, 0.5)
    selectionColor: Theme.accent
    selectedTextColor: Theme.onFill
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    hoverEnabled: true

    Accessible.name: label
    Accessible.description: placeholderText
    Component.onCompleted: text = value
    onValueChanged: {
        if (text !== value)
            text = value;
    }
    onTextEdited: edited(text)

    background: Rectangle {
        radius: Theme.cornerField
        color: Theme.field
        border.width: 1
        border.color: Theme.highContrast ? Theme.border
                      : Theme.wash(Theme.primary, field.hovered ? 0.3 : 0.18)

        FocusRing {
            visible: field.activeFocus
            distance: -1
            controlRadius: Theme.cornerField
        }
    }

    StyledText {
        anchors.fill: parent
        anchors.leftMargin: field.leftPadding
        anchors.rightMargin: field.rightPadding
        visible: field.length === 0 && field.preeditText.length === 0
        text: field.placeholderText
        color: Theme.secondary
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
