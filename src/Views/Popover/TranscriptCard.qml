import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// The text of the last dictation, cut at its fourth line.
SurfaceCard {
    id: card

    required property string transcript

    readonly property int visibleLines: 4

    ColumnLayout {
        width: parent.width
        spacing: 6

        StyledText {
            text: "Last Transcript"
            style: Theme.caption
            color: Theme.secondary
        }
        Item {
            Layout.fillWidth: true
            implicitHeight: Math.min(edit.implicitHeight, card.visibleLines * Theme.callout.lineHeight)
            clip: true

            SelectableText {
                id: edit

                readonly property bool isMirrored: effectiveHorizontalAlignment === TextEdit.AlignRight

                width: parent.width
                text: card.transcript
                style: Theme.callout
                wrapMode: TextEdit.Wrap
            }
            // Covers the end of the last line.
            Rectangle {
                id: ellipsis

                visible: edit.lineCount > card.visibleLines
                y: parent.height - height
                height: Theme.callout.lineHeight
                color: card.color

                StyledText {
                    id: dots

                    x: edit.isMirrored ? parent.width - width : 0
                    text: "…"
                    style: Theme.callout
                    Accessible.ignored: true
                }
            }
            Connections {
                target: edit

                function onContentSizeChanged(): void {
                    card.placeEllipsis();
                }
                function onTextChanged(): void {
                    card.placeEllipsis();
                }
                function onWidthChanged(): void {
                    card.placeEllipsis();
                }
            }
        }
    }

    function placeEllipsis(): void {
        const limit = edit.isMirrored ? dots.width : edit.width - dots.width;
        const last = edit.positionAt(limit, (visibleLines - 0.5) * Theme.callout.lineHeight);
        // The place after a line's last sign is that before the next line's first.
        const isOnNextLine = edit.positionToRectangle(last).y >= visibleLines * Theme.callout.lineHeight;
        const end = edit.positionToRectangle(isOnNextLine ? last - 1 : last).x;
        ellipsis.x = edit.isMirrored ? 0 : Math.min(end, limit);
        ellipsis.width = (edit.isMirrored ? Math.max(end, limit) : edit.width) - ellipsis.x;
    }
}
