import QtQuick
import Kestrova.Primitives
import Kestrova.Dashboard

ThemedSceneRoot {
    id: window

    required property DashboardModel model

    title: "Dashboard"
    width: 1080
    height: 680
    minimumWidth: 980
    minimumHeight: 640

    DashboardView {
        anchors.fill: parent
        model: window.model
    }
}
