pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Kestrova.Primitives

// The tabs of a window. The arrow keys choose; the list is one Tab stop.
FocusScope {
    id: sidebar

    default property list<SidebarTab> tabs
    required property int currentIndex
    signal chosen(int index)

    Accessible.role: Accessible.PageTabList

    Rectangle {
        anchors.fill: parent
        color: Theme.sidebar
    }
    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.border
    }
    // Has the keyboard for the rows.
    T.Control {
        id: keyboard

        anchors.fill: parent
        focusPolicy: Qt.TabFocus

        Accessible.ignored: true
        Keys.onUpPressed: sidebar.step(-1)
        Keys.onDownPressed: sidebar.step(1)
    }
    Column {
        id: rows

        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 11
        anchors.topMargin: 12
        spacing: 2

        Repeater {
            model: sidebar.tabs

            // An AbstractButton would be a push button to assistive technology, whatever role it is given.
            T.TabButton {
                id: row

                required property SidebarTab modelData
                required property int index
                readonly property bool isCurrent: index === sidebar.currentIndex

                width: rows.width
                implicitHeight: Math.max(32, label.implicitHeight + 12)
                text: modelData.title
                focusPolicy: Qt.NoFocus
                hoverEnabled: true
                onPressed: {
                    sidebar.takeFocus(Qt.MouseFocusReason);
                    sidebar.chosen(index);
                }
                onClicked: sidebar.chosen(index)

                Accessible.name: text
                Accessible.selectable: true
                Accessible.selected: isCurrent
                Accessible.onPressAction: sidebar.chosen(index)

                contentItem: Item {
                    Symbol {
                        id: symbol

                        anchors.verticalCenter: parent.verticalCenter
                        x: 10
                        name: row.modelData.symbol
                        color: Theme.accent
                    }
                    StyledText {
                        id: label

                        anchors.verticalCenter: parent.verticalCenter
                        anchors.left: symbol.right
                        anchors.leftMargin: 9
                        anchors.right: parent.right
                        anchors.rightMargin: 10
                        text: row.text
                        style: row.isCurrent ? Theme.prominentButton : Theme.button
                        elide: Text.ElideRight
                        Accessible.ignored: true
                    }
                }
                background: Rectangle {
                    radius: Theme.cornerField
                    color: row.fillColor()

                    Behavior on color {
                        ColorAnimation { duration: Theme.hoverFade }
                    }
                    FocusRing {
                        visible: keyboard.visualFocus && row.isCurrent
                        distance: -2
                        controlRadius: Theme.cornerField
                    }
                }

                function fillColor(): color {
                    if (isCurrent)
                        return Theme.fill(Theme.accent, down ? 0.22 : hovered ? 0.18 : 0.14);
                    return Theme.fill(Theme.grey, down ? 0.2 : hovered ? 0.12 : 0);
                }
            }
        }
    }

    function takeFocus(reason: int): void {
        keyboard.forceActiveFocus(reason);
        keyboard.focusReason = reason; // also when it has the focus already
    }

    function step(by: int): void {
        const index = currentIndex + by;
        takeFocus(Qt.TabFocusReason);
        if (index >= 0 && index < tabs.length)
            chosen(index);
    }
}
