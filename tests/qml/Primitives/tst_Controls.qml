import QtQuick
import QtTest
import Kestrova.Primitives

TestCase {
    id: testCase

    name: "Controls"
    width: 400
    height: 300
    visible: true
    when: windowShown

    Component {
        id: buttonComponent

        PushButton {
            text: "Fix"
        }
    }
    SignalSpy {
        id: spy
    }

    function watch(object: QtObject, signalName: string): void {
        spy.target = null;
        spy.signalName = signalName;
        spy.target = object;
        spy.clear();
    }

    function test_aButtonIsPressedBySpaceAndReturn_data(): var {
        return [{ tag: "space", key: Qt.Key_Space }, { tag: "return", key: Qt.Key_Return },
                { tag: "enter", key: Qt.Key_Enter }];
    }

    function test_aButtonIsPressedBySpaceAndReturn(data: var): void {
        const button = createTemporaryObject(buttonComponent, this);
        watch(button, "clicked");
        button.forceActiveFocus(Qt.TabFocusReason);
        keyClick(data.key);
        compare(spy.count, 1);
    }

    Component {
        id: longTextComponent

        SelectableText {
            width: 300
            text: "a long text"
        }
    }

    function test_aSelectionMayOutliveItsText(): void {
        failOnWarning(/./);
        const edit = createTemporaryObject(longTextComponent, this);
        edit.forceActiveFocus();
        edit.selectAll();
        edit.text = "";
        edit.text = "short";
        edit.cursorPosition = 5;
        edit.text = "a";
    }

    function test_aDisabledButtonIsNotPressed(): void {
        const button = createTemporaryObject(buttonComponent, this, { enabled: false });
        watch(button, "clicked");
        mouseClick(button);
        compare(spy.count, 0);
    }

    Component {
        id: fieldComponent

        TextInputField {
            label: "Path"
            value: "/usr/bin"
            onEdited: text => value = text
        }
    }

    function test_typingKeepsTheCursor(): void {
        const field = createTemporaryObject(fieldComponent, this);
        field.forceActiveFocus();
        field.cursorPosition = 4;
        keyClick(Qt.Key_X);
        keyClick(Qt.Key_Y);
        compare(field.text, "/usrxy/bin");
        compare(field.value, "/usrxy/bin");
        compare(field.cursorPosition, 6);
    }

    function test_aValueFromElsewhereIsShown(): void {
        const field = createTemporaryObject(fieldComponent, this);
        field.value = "/opt";
        compare(field.text, "/opt");
    }

    function test_theSameValueKeepsTheSelection(): void {
        const field = createTemporaryObject(fieldComponent, this);
        field.forceActiveFocus();
        field.select(1, 4);
        field.valueChanged();
        compare(field.selectedText, "usr");
    }

    Component {
        id: pickerComponent

        SegmentedPicker {
            caption: "Period"
            choices: ["Hourly", "Daily", "Weekly"]
            currentIndex: 1
            onChosen: index => currentIndex = index
        }
    }

    function test_arrowsChooseInAPicker(): void {
        const picker = createTemporaryObject(pickerComponent, this);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Right);
        compare(picker.currentIndex, 2);
        keyClick(Qt.Key_Right);
        compare(picker.currentIndex, 2);
        keyClick(Qt.Key_Left);
        keyClick(Qt.Key_Left);
        compare(picker.currentIndex, 0);
        keyClick(Qt.Key_Left);
        compare(picker.currentIndex, 0);
    }

    Component {
        id: sidebarComponent

        SidebarList {
            width: 184
            height: 200
            currentIndex: 0
            onChosen: index => currentIndex = index

            SidebarTab {
                title: "One"
                symbol: "gear"
            }
            SidebarTab {
                title: "Two"
                symbol: "power"
            }
        }
    }

    function test_arrowsAndClicksChooseATab(): void {
        const sidebar = createTemporaryObject(sidebarComponent, this);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Down);
        compare(sidebar.currentIndex, 1);
        keyClick(Qt.Key_Down);
        compare(sidebar.currentIndex, 1);
        mouseClick(sidebar, 60, 28);
        compare(sidebar.currentIndex, 0);
    }

    Component {
        id: errorComponent

        DangerCard {
            width: 300
            text: "Failed."
        }
    }

    function test_anErrorCardGrowsToEightLinesAndThenScrolls(): void {
        const card = createTemporaryObject(errorComponent, this);
        compare(card.implicitHeight, Theme.caption.lineHeight + 24);
        verify(!card.isLong);
        card.text = "a line of the tool\n".repeat(500);
        compare(card.implicitHeight, 8 * Theme.caption.lineHeight + 24);
        verify(card.isLong);
        card.text = "";
        verify(!card.visible);
    }

    function test_aCopyOfALongErrorIsAskedFor(): void {
        const card = createTemporaryObject(errorComponent, this, { text: "1\n2\n3" });
        card.height = card.implicitHeight;
        watch(card, "copyRequested");
        mouseClick(card, card.width - 8 - 13, 8 + 13);
        compare(spy.count, 1);
    }

    Component {
        id: paneComponent

        ScrollPane {
            width: 200
            height: 100
            contentHeight: column.height

            Column {
                id: column

                Repeater {
                    model: 10

                    PushButton {
                        required property int index

                        text: "Button " + index
                    }
                }
            }
        }
    }

    function test_aPaneFollowsTheKeyboardFocus(): void {
        const pane = createTemporaryObject(paneComponent, this);
        for (let i = 0; i < 10; ++i)
            keyClick(Qt.Key_Tab);
        compare(pane.contentY, pane.contentHeight - pane.height);
        for (let i = 0; i < 9; ++i)
            keyClick(Qt.Key_Backtab);
        compare(pane.contentY, 0);
    }

    Component {
        id: tallComponent

        ScrollPane {
            property alias tall: tall
            property alias inner: inner

            width: 200
            height: 100
            contentHeight: 1000

            TextInput {
                id: tall

                y: 200
                width: 200
                height: 300
                text: "tall"
            }
            ScrollPane {
                id: inner

                y: 600
                width: 200
                height: 80
                contentHeight: 500

                TextInput {
                    width: 200
                    height: 500
                    text: "taller"
                }
            }
        }
    }

    function test_anItemTallerThanItsPaneStaysWhereItIsSeen(): void {
        const pane = createTemporaryObject(tallComponent, this, { contentY: 280 });
        pane.tall.forceActiveFocus();
        compare(pane.contentY, 280);
    }

    function test_ofAnItemTallerThanItsPaneTheBeginningIsShown_data(): var {
        return [{ tag: "from above", contentY: 0 }, { tag: "from below", contentY: 700 }];
    }

    function test_ofAnItemTallerThanItsPaneTheBeginningIsShown(data: var): void {
        const pane = createTemporaryObject(tallComponent, this, { contentY: data.contentY });
        pane.tall.forceActiveFocus();
        compare(pane.contentY, 200 - 12);
    }

    function test_aPaneShowsThePaneInWhichTheFocusIs(): void {
        const pane = createTemporaryObject(tallComponent, this);
        pane.inner.contentY = 300;
        pane.inner.contentItem.children[0].forceActiveFocus();
        compare(pane.inner.contentY, 300);
        compare(pane.contentY, 600 - 12);
    }

    function test_theWheelMovesAPaneWithinItsContent(): void {
        const pane = createTemporaryObject(paneComponent, this);
        mouseWheel(pane, 50, 50, 0, -120);
        compare(pane.contentY, pane.wheelStep);
        mouseWheel(pane, 50, 50, 0, -1200);
        compare(pane.contentY, pane.contentHeight - pane.height);
        mouseWheel(pane, 50, 50, 0, 12000);
        compare(pane.contentY, 0);
    }
}
