import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// A total over the chart.
SurfaceCard {
    id: metric

    required property string title
    required property string value

    Layout.fillWidth: true
    Layout.preferredWidth: 1
    padding: 12
    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + value

    Column {
        width: parent.width
        spacing: 4

        StyledText {
            text: metric.title
            style: Theme.callout
            color: Theme.secondary
            Accessible.ignored: true
        }
        FixedDigits {
            text: metric.value
            style: Theme.compactMetric
            Accessible.ignored: true
        }
    }
}
