import QtQuick
import QtQuick.Templates as T

// Content that may be taller than its place. The wheel and the page keys move it, and it follows
// the keyboard focus; dragging is left to the text in it.
Flickable {
    id: pane

    property bool alwaysShowsBar: false
    // How far below the top the scroll bar begins.
    property real barInset: 0
    readonly property real wheelStep: 56

    clip: true
    interactive: false
    boundsBehavior: Flickable.StopAtBounds

    Keys.onPressed: event => {
        const step = { [Qt.Key_PageUp]: -0.9 * height, [Qt.Key_PageDown]: 0.9 * height }[event.key];
        event.accepted = step !== undefined;
        if (event.accepted)
            scrollBy(step);
    }

    T.ScrollBar.vertical: OverlayScrollBar {
        alwaysShown: pane.alwaysShowsBar
        topPadding: padding + pane.barInset
    }
    WheelHandler {
        onWheel: event => pane.scrollBy(event.pixelDelta.y !== 0 ? -event.pixelDelta.y
                                        : -event.angleDelta.y / 120 * pane.wheelStep)
    }
    Connections {
        target: pane.Window.window

        function onActiveFocusItemChanged(): void {
            pane.reveal(pane.Window.window.activeFocusItem);
        }
    }

    function scrollBy(distance: real): void {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
    }

    // The item, or the clipped one around it that shows a part of it. Of what is taller than the
    // pane the beginning, unless it fills the pane already.
    function reveal(item: Item): void {
        let shown = item;
        for (let ancestor = item; ancestor !== contentItem; ancestor = ancestor.parent) {
            if (!ancestor)
                return;
            if (ancestor.clip)
                shown = ancestor;
        }
        const margin = 12;
        const top = shown.mapToItem(contentItem, 0, 0).y - margin;
        const bottom = top + shown.height + 2 * margin;
        const isAbove = top < contentY;
        const isBelow = bottom > contentY + height;
        if (isAbove && isBelow)
            return;
        if (isAbove || bottom - top > height)
            scrollBy(top - contentY);
        else if (isBelow)
            scrollBy(bottom - contentY - height);
    }
}
