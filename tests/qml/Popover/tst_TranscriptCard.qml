import QtQuick
import QtTest
import Kestrova.Primitives
import Kestrova.Popover

TestCase {
    id: testCase

    name: "TranscriptCard"
    width: 360
    height: 300
    visible: true
    when: windowShown

    readonly property int lineHeight: Theme.callout.lineHeight

    Component {
        id: component

        TranscriptCard {
            width: 336
        }
    }

    function card(transcript: string): var {
        const made = createTemporaryObject(component, this, { transcript: transcript });
        waitForRendering(made);
        return made;
    }

    function find(item: var, isIt: var): var {
        if (isIt(item))
            return item;
        for (let i = 0; i < item.children.length; ++i) {
            const found = find(item.children[i], isIt);
            if (found)
                return found;
        }
        return null;
    }

    function dots(card: var): var {
        return find(card, item => item.text === "…");
    }

    function text(card: var): var {
        return find(card, item => item instanceof TextEdit);
    }

    function test_itIsAsHighAsItsText(): void {
        const one = card("One line");
        compare(card("Two\nlines").implicitHeight - one.implicitHeight, lineHeight);
        verify(!dots(one).visible);
    }

    function test_itIsCutAtTheFourthLine(): void {
        const four = card("1\n2\n3\n4");
        verify(!dots(four).visible);
        const five = card("1\n2\n3\n4\n5");
        compare(five.implicitHeight, four.implicitHeight);
        verify(dots(five).visible);
    }

    function test_theDotsFollowTheLastVisibleWord_data(): var {
        return [
            { tag: "left to right", letter: "w", isMirrored: false },
            { tag: "right to left", letter: "ש", isMirrored: true }
        ];
    }

    function test_theDotsFollowTheLastVisibleWord(data: var): void {
        const word = data.letter.repeat(3);
        const cut = card([word, word, word, word, word].join("\n"));
        const edit = text(cut);
        const place = dots(cut).mapToItem(edit, 0, 0);
        fuzzyCompare(place.y, 3 * lineHeight, 1);
        const end = edit.positionToRectangle(4 * (word.length + 1) - 1).x;
        fuzzyCompare(data.isMirrored ? place.x + dots(cut).width : place.x, end, 1);
    }

    function test_theDotsStayWithinAFullLine_data(): var {
        return [
            { tag: "words", text: "Some words that are repeated ".repeat(20) },
            { tag: "one word", text: "W".repeat(1000) },
            { tag: "right to left", text: "שלום עולם זה טקסט ארוך מאוד ".repeat(20) }
        ];
    }

    function test_theDotsStayWithinAFullLine(data: var): void {
        const cut = card(data.text);
        const edit = text(cut);
        const place = dots(cut).mapToItem(edit, 0, 0);
        verify(dots(cut).visible);
        verify(place.x >= 0);
        verify(place.x + dots(cut).width <= edit.width + 1);
    }

    function test_allOfTheTranscriptCanBeCopied(): void {
        const transcript = "Some words that are repeated ".repeat(20);
        const edit = text(card(transcript));
        edit.forceActiveFocus();
        edit.selectAll();
        compare(edit.selectedText, transcript);
    }
}
