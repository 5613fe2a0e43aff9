import QtQuick
import QtQuick.Templates as T

// A dialog over its window, which is dimmed and takes no input meanwhile. Its title is for assistive
// technology; the content shows it.
T.Dialog {
    id: sheet

    // What had the keyboard before, and gets it back.
    property Item focusedBefore: null
    property int focusReasonBefore

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: 460
    padding: 20
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    onAboutToShow: {
        focusedBefore = parent.Window.activeFocusItem;
        focusReasonBefore = (focusedBefore as T.Control)?.focusReason ?? Qt.PopupFocusReason;
    }
    onClosed: focusedBefore?.forceActiveFocus(focusReasonBefore)

    T.Overlay.modal: Rectangle {
        color: Theme.dimming
    }
    background: Rectangle {
        radius: Theme.cornerWindow
        color: Theme.window
        border.width: 1
        border.color: Theme.overlayBorder
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.sheetIn; easing.type: Easing.OutCubic }
        NumberAnimation { property: "scale"; from: Theme.reducedMotion ? 1 : 0.97; to: 1; duration: Theme.sheetIn; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.sheetOut; easing.type: Easing.OutCubic }
    }
}
