import QtQml

// What the list of a window's tabs shows of one.
QtObject {
    required property string title
    required property string symbol
}
