import QtQuick
import Kestrova.Primitives
import Kestrova.Recorder
import Kestrova.Dashboard

// The content of the dashboard window: the tabs and the one that is selected.
FocusScope {
    id: view

    required property DashboardModel model
    property int selectedTab: 0

    readonly property var tabs: [
        { title: "Overview", symbol: "square.grid.2x2", document: "OverviewTab.qml" },
        { title: "Hotbar Apps", symbol: "dock.rectangle", document: "HotbarAppsTab.qml" },
        { title: "Usage Stats", symbol: "chart.bar.xaxis", document: "UsageStatsTab.qml" }
    ]

    SidebarList {
        id: sidebar

        width: 184
        height: parent.height
        tabs: view.tabs
        currentIndex: view.selectedTab
        onChosen: index => view.selectedTab = index
    }
    ScrollPane {
        id: pane

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        contentHeight: content.implicitHeight + 40

        ModelLoader {
            id: content

            x: 20
            y: 20
            width: pane.width - 40
            model: view.model
            document: view.tabs[view.selectedTab].document
            onLoaded: pane.contentY = 0
        }
    }
    ShortcutRecorderSheet {
        recorder: view.model.recorder
    }
}
