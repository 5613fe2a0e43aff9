pragma ComponentBehavior: Bound

import QtQuick
import Kestrova.Primitives
import Kestrova.Dashboard

// Names with their counts, each over a bar; a sentence when there are none.
SurfaceCard {
    id: panel

    required property string title
    required property string emptyText
    required property list<usageRow> rows
    // Of a bar that is about to go.
    property usageRow none

    padding: 14

    Column {
        width: parent.width
        spacing: 10

        StyledText {
            text: panel.title
            style: Theme.headline
            Accessible.role: Accessible.Heading
        }
        StyledText {
            width: parent.width
            height: Math.max(96, implicitHeight)
            visible: panel.rows.length === 0
            text: panel.emptyText
            color: Theme.secondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Repeater {
            model: panel.rows.length

            UsageBarRow {
                required property int index

                width: parent.width
                row: panel.rows[index] ?? panel.none
            }
        }
    }
}
