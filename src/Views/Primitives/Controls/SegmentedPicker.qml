pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T

// One of a few choices, all of them visible. The arrow keys choose; the picker is one Tab stop.
RowLayout {
    id: picker

    required property string caption
    required property list<string> choices
    required property int currentIndex
    signal chosen(int index)

    spacing: 12

    StyledText {
        text: picker.caption
        color: Theme.secondary
        visible: picker.caption.length > 0
        Accessible.ignored: true
    }
    // A Control would have no role for assistive technology, whatever role it is given.
    T.GroupBox {
        id: track

        title: picker.caption
        Accessible.name: picker.caption
        implicitWidth: segments.implicitWidth + 4
        implicitHeight: segments.implicitHeight + 4
        focusPolicy: Qt.StrongFocus

        Keys.onLeftPressed: picker.step(-1)
        Keys.onRightPressed: picker.step(1)
        Keys.onUpPressed: picker.step(-1)
        Keys.onDownPressed: picker.step(1)

        background: Rectangle {
            radius: Theme.cornerField
            color: Theme.fill(Theme.grey, 0.16)

            FocusRing {
                visible: track.visualFocus
                controlRadius: Theme.cornerField
            }
        }

        Rectangle {
            readonly property Item segment: repeater.count > picker.currentIndex
                                            ? repeater.itemAt(picker.currentIndex) : null

            visible: segment !== null
            x: 2 + (segment?.x ?? 0)
            y: 2
            width: segment?.width ?? 0
            height: segment?.height ?? 0
            radius: Theme.cornerSegment
            color: Theme.segment
            border.width: 1
            border.color: Qt.rgba(0, 0, 0, Theme.dark ? 0.3 : 0.1)

            Behavior on x {
                NumberAnimation { duration: Theme.slide; easing.type: Easing.OutCubic }
            }
            Behavior on width {
                NumberAnimation { duration: Theme.slide; easing.type: Easing.OutCubic }
            }
        }
        Row {
            id: segments

            x: 2
            y: 2

            Repeater {
                id: repeater

                model: picker.choices

                // An AbstractButton would be a push button to assistive technology, whatever role it is given.
                T.RadioButton {
                    id: segment

                    required property string modelData
                    required property int index

                    text: modelData
                    checked: index === picker.currentIndex
                    implicitWidth: widest.implicitWidth + 28
                    implicitHeight: Math.max(24, label.implicitHeight + 6)
                    focusPolicy: Qt.NoFocus
                    hoverEnabled: true
                    onClicked: picker.chosen(index)

                    Accessible.name: text
                    Accessible.onPressAction: picker.chosen(index)
                    Accessible.onToggleAction: picker.chosen(index)

                    contentItem: Item {
                        // The label must not move when it becomes bolder.
                        StyledText {
                            id: widest

                            text: segment.text
                            style: Theme.prominentButton
                            visible: false
                        }
                        StyledText {
                            id: label

                            anchors.centerIn: parent
                            text: segment.text
                            style: segment.checked ? Theme.prominentButton : Theme.button
                            color: segment.checked || segment.hovered ? Theme.primary : Theme.secondary
                            Accessible.ignored: true
                        }
                    }
                    background: Rectangle {
                        radius: Theme.cornerSegment
                        color: segment.down && !segment.checked ? Theme.fill(Theme.grey, 0.12)
                                                                : "transparent"
                    }
                }
            }
        }
    }

    function step(by: int): void {
        const index = currentIndex + by;
        if (index >= 0 && index < choices.length)
            chosen(index);
    }
}
