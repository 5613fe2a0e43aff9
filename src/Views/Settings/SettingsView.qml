import QtQuick
import QtQuick.Layouts
import Kestrova.Primitives
import Kestrova.Recorder
import Kestrova.Settings

// The window "Settings".
ThemedSceneRoot {
    id: window

    required property SettingsModel model
    property int selectedTab: 0
    readonly property int sidebarWidth: 180

    title: "Settings"
    width: 800
    height: 620
    minimumWidth: 780
    minimumHeight: 580
    onSelectedTabChanged: pane.contentY = 0

    RowLayout {
        anchors.fill: parent
        spacing: 0

        SidebarList {
            id: sidebar

            Layout.fillHeight: true
            Layout.preferredWidth: window.sidebarWidth
            currentIndex: window.selectedTab
            onChosen: index => window.selectedTab = index

            SidebarTab {
                title: "General"
                symbol: "slider.horizontal.3"
            }
            SidebarTab {
                title: "Whisper.cpp"
                symbol: "waveform"
            }
            SidebarTab {
                title: "Model"
                symbol: "externaldrive"
            }
            SidebarTab {
                title: "Permissions"
                symbol: "hand.raised"
            }
            SidebarTab {
                title: "Diagnostics"
                symbol: "wrench.and.screwdriver"
            }
        }
        ScrollPane {
            id: pane

            Layout.fillWidth: true
            Layout.fillHeight: true
            contentHeight: detail.height + 48

            ColumnLayout {
                id: detail

                x: 20
                y: 24
                width: window.width - window.sidebarWidth - 40 // not the pane's, which is 0 at first
                spacing: 12

                SettingsCard {
                    Layout.fillWidth: true

                    RowLayout {
                        spacing: 8

                        SectionTitle {
                            Layout.fillWidth: true
                            subtitle: sidebar.tabs[window.selectedTab].title
                        }
                        StatusPill {
                            status: window.model.status
                        }
                    }
                }
                GeneralTab {
                    Layout.fillWidth: true
                    visible: window.selectedTab === 0
                    model: window.model
                }
                WhisperTab {
                    Layout.fillWidth: true
                    visible: window.selectedTab === 1
                    model: window.model
                }
                ModelTab {
                    Layout.fillWidth: true
                    visible: window.selectedTab === 2
                    model: window.model
                }
                PermissionsTab {
                    Layout.fillWidth: true
                    visible: window.selectedTab === 3
                    model: window.model
                }
                DiagnosticsTab {
                    Layout.fillWidth: true
                    visible: window.selectedTab === 4
                    model: window.model
                }
                DangerCard {
                    Layout.fillWidth: true
                    padding: 16
                    text: window.model.lastError
                    onCopyRequested: window.model.copyError()
                }
            }
        }
    }
    ShortcutRecorderSheet {
        recorder: window.model.recorder
    }

    component SectionTitle: ColumnLayout {
        property alias subtitle: caption.text

        spacing: 2

        StyledText {
            Layout.fillWidth: true
            text: "Kestrova Settings"
            style: Theme.title2
            Accessible.role: Accessible.Heading
        }
        StyledText {
            id: caption

            Layout.fillWidth: true
            color: Theme.secondary
            style: Theme.callout
        }
    }
}
