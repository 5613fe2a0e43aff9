import QtQuick
import QtQuick.Templates as T

// The tooltip of the control that is its parent; shown while the pointer rests on it.
T.ToolTip {
    id: tip

    delay: Theme.tipDelay
    timeout: Theme.tipTimeout
    margins: 4
    leftPadding: 8
    rightPadding: 8
    topPadding: 5
    bottomPadding: 5
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: -height - 4
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
                 | T.Popup.CloseOnReleaseOutsideParent

    contentItem: StyledText {
        text: tip.text
        style: Theme.tooltip
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.cornerField
        color: Theme.tip
        border.width: 1
        border.color: Theme.overlayBorder
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.fadeIn }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.fadeOut }
    }
}
