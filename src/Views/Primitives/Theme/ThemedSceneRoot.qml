import QtQuick
import QtQuick.Window

// The window of every scene: in the colours of the theme, which it follows at once.
Window {
    color: Theme.window
}
