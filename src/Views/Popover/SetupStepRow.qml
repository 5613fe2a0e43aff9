import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Popover

// One thing that a dictation needs, and whether it is there. Anchored: a row layout of this version
// of Qt keeps the height that the detail had while it was wrapped at no width.
Item {
    id: row

    required property setupStep step
    // What stands in the way although it is complete.
    property string notice
    property bool isDetailSelectable: false

    Layout.fillWidth: true
    implicitHeight: Math.max(texts.implicitHeight, pill.implicitHeight)

    Column {
        id: texts

        anchors.left: parent.left
        anchors.right: pill.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        StyledText {
            width: parent.width
            text: row.step.title
            style: Theme.subheadline
        }
        SelectableText {
            width: parent.width
            selectByMouse: row.isDetailSelectable
            text: row.step.detail
            style: Theme.caption
            color: Theme.secondary
            wrapMode: TextEdit.Wrap
        }
        StyledText {
            width: parent.width
            visible: text.length > 0
            text: row.notice
            style: Theme.caption
            wrapMode: Text.Wrap
        }
    }
    StatusPill {
        id: pill

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        status: row.step.status
    }
}
