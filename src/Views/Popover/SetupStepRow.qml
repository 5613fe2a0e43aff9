import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// One thing that a dictation needs, and whether it is there.
RowLayout {
    id: row

    required property string title
    required property string detail
    required property bool isComplete
    property bool isDetailSelectable: false

    spacing: 8

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2

        StyledText {
            Layout.fillWidth: true
            text: row.title
            style: Theme.subheadline
        }
        StyledText {
            Layout.fillWidth: true
            visible: !row.isDetailSelectable
            text: row.detail
            style: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
        SelectableText {
            Layout.fillWidth: true
            visible: row.isDetailSelectable
            text: row.detail
            style: Theme.caption
            color: Theme.secondary
            wrapMode: TextEdit.Wrap
        }
    }
    StatusPill {
        text: row.isComplete ? "Ready" : "Pending"
        tone: row.isComplete ? StatusPillTone.Success : StatusPillTone.Warning
        icon: row.isComplete ? "checkmark" : "exclamationmark"
    }
}
