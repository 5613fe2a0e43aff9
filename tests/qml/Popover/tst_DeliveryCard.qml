import QtQuick
import QtTest
import Kestrova.Primitives
import Kestrova.Popover

TestCase {
    id: testCase

    name: "DeliveryCard"
    width: 360
    height: 300
    visible: true
    when: windowShown

    Component {
        id: component

        DeliveryCard {
            property var earlier

            width: 336
            earlierTranscripts: earlier
        }
    }
    SignalSpy {
        id: copies

        signalName: "copyRequested"
    }
    SignalSpy {
        id: earlierCopies

        signalName: "earlierCopyRequested"
    }

    function card(notice: string, earlier: var): var {
        const made = createTemporaryObject(component, this, { notice: notice, earlier: earlier });
        copies.target = made;
        earlierCopies.target = made;
        copies.clear();
        earlierCopies.clear();
        waitForRendering(made);
        return made;
    }

    // The shown texts and buttons, top to bottom.
    function shownItems(item: var): var {
        if (!item.visible)
            return [];
        if (item instanceof PushButton || item instanceof StyledText)
            return [item];
        let found = [];
        for (let i = 0; i < item.children.length; ++i)
            found = found.concat(shownItems(item.children[i]));
        return found;
    }

    function contents(card: var): var {
        return shownItems(card).map(
            item => item instanceof PushButton ? "[" + item.Accessible.name + "]" : item.text);
    }

    function buttons(card: var): var {
        return shownItems(card).filter(item => item instanceof PushButton);
    }

    function test_withNothingToSayItIsNotShown(): void {
        verify(!card("", []).visible);
    }

    function test_aNoticeHasACopyAtHand(): void {
        const made = card("Not pasted: left on the clipboard.", []);
        compare(contents(made), ["Not pasted: left on the clipboard.", "[Copy last transcript]"]);
        mouseClick(buttons(made)[0]);
        compare(copies.count, 1);
        buttons(made)[0].forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(copies.count, 2);
    }

    function test_anOrdinaryNoticeIsOneLine(): void {
        const made = card("Not confirmed: left on the clipboard.", []);
        compare(made.implicitHeight, buttons(made)[0].height + 2 * made.padding);
    }

    function test_earlierTranscriptsAreLinesOfTheirOwn(): void {
        const made = card("Not pasted: left on the clipboard.", ["second\n\tline", "word ".repeat(200)]);
        compare(contents(made).slice(2, 5), ["Earlier, not confirmed", "second line", "[Copy earlier transcript]"]);
        const rows = buttons(made);
        compare(rows.length, 3);
        compare(rows[1].height, rows[2].height);
        verify(rows[2].mapToItem(made, rows[2].width, 0).x <= made.width - made.padding + 0.5);
        compare(rows[2].Accessible.description, "word ".repeat(200));
        mouseClick(rows[2]);
        compare(earlierCopies.count, 1);
        compare(earlierCopies.signalArguments[0][0], 1);
        compare(copies.count, 0);
    }

    function test_earlierTranscriptsAreThereWithoutANotice(): void {
        compare(contents(card("", ["first"])), ["Earlier, not confirmed", "first", "[Copy earlier transcript]"]);
    }
}
