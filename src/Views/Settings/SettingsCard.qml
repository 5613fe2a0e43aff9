import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives

// A card of the settings: rows below each other.
SurfaceCard {
    default property alias rows: column.data

    padding: 16

    ColumnLayout {
        id: column

        width: parent.width
        spacing: 10
    }
}
