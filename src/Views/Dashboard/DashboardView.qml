import QtQuick
import Kestrova.Primitives
import Kestrova.Recorder
import Kestrova.Dashboard

// The content of the dashboard window: the tabs and the one that is selected.
FocusScope {
    id: view

    required property DashboardModel model
    property int selectedTab: 0

    // What each tab shows.
    readonly property list<string> documents: ["OverviewTab.qml", "HotbarAppsTab.qml",
                                               "UsageStatsTab.qml"]

    SidebarList {
        id: sidebar

        width: 184
        height: parent.height
        currentIndex: view.selectedTab
        onChosen: index => view.selectedTab = index

        SidebarTab {
            title: "Overview"
            symbol: "square.grid.2x2"
        }
        SidebarTab {
            title: "Hotbar Apps"
            symbol: "dock.rectangle"
        }
        SidebarTab {
            title: "Usage Stats"
            symbol: "chart.bar.xaxis"
        }
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
            document: view.documents[view.selectedTab]
            onLoaded: pane.contentY = 0
        }
    }
    ShortcutRecorderSheet {
        recorder: view.model.recorder
    }
}
