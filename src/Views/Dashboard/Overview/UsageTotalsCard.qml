import QtQuick
import Kestrova.Primitives
import Kestrova.Dashboard

// The totals of one time range.
SurfaceCard {
    id: card

    required property usageCard totals

    padding: 14

    Column {
        width: parent.width
        spacing: 4

        StyledText {
            text: card.totals.title
            style: Theme.headline
            Accessible.role: Accessible.Heading
        }
        FixedDigits {
            text: card.totals.recordings
            style: Theme.metric
            Accessible.name: text + " recordings"
        }
        Flow {
            width: parent.width
            spacing: 10

            StyledText {
                text: card.totals.words
                style: Theme.caption
                color: Theme.secondary
            }
            StyledText {
                text: card.totals.minutes
                style: Theme.caption
                color: Theme.secondary
            }
        }
    }
}
