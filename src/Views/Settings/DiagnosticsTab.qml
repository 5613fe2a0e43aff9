import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Settings

ColumnLayout {
    id: tab

    required property SettingsModel model

    SettingsCard {
        Layout.fillWidth: true

        SectionHeader {
            Layout.fillWidth: true
            title: "Support"
            subtitle: "Use diagnostics output when reporting setup or insertion issues."
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 300
            radius: Theme.cornerField
            color: Theme.well
            border.width: 1
            border.color: Theme.wash(Theme.primary, 0.18)

            FocusRing {
                visible: report.activeFocus
                distance: -1
                controlRadius: Theme.cornerField
            }
            ScrollPane {
                id: well

                anchors.fill: parent
                anchors.margins: 1
                contentHeight: report.height + 24
                alwaysShowsBar: true

                SelectableText {
                    id: report

                    x: 12
                    y: 12
                    width: well.width - 28
                    text: tab.visible ? tab.model.diagnostics : ""
                    style: Theme.code
                    wrapMode: TextEdit.Wrap
                    activeFocusOnTab: true
                    Accessible.name: "Diagnostics"
                    Accessible.description: text
                }
            }
        }
        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: 8

            PushButton {
                text: "Print to Console"
                onClicked: tab.model.printDiagnostics()
            }
            PushButton {
                prominent: true
                text: "Copy JSON"
                onClicked: tab.model.copyDiagnostics()
            }
        }
    }
}
