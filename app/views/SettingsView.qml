// The settings: panes at the left, the chosen one beside them. Every change counts at once.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Item {
    id: root
    readonly property var panes: [
        { key: "general", name: "General", icon: "settings-2", file: "GeneralPane.qml" },
        { key: "integrations", name: "Integrations", icon: "puzzle", file: "IntegrationsPane.qml" },
        { key: "privacy", name: "Privacy", icon: "shield", file: "PrivacyPane.qml" },
        { key: "about", name: "About", icon: "info", file: "AboutPane.qml" }
    ].filter(pane => pane.key !== "integrations" || Privacy.adaptersRefusal === "")
    Keys.forwardTo: page
    readonly property int current: Math.max(0, panes.findIndex(pane => pane.key === Ui.settingsPane))

    PushButton {
        id: back
        anchors.left: parent.left
        anchors.leftMargin: 14
        y: Math.round((60 - height) / 2)
        kind: "plain"
        iconName: mirrored ? "arrow-right" : "arrow-left"
        text: "Back to workspaces · esc"
        onClicked: Ui.back()
    }

    Column {
        id: sidebar
        anchors.left: parent.left
        anchors.leftMargin: 24
        y: 68
        width: Math.round(192 * (1 + (Theme.scale - 1) / 2))
        spacing: 2
        Accessible.role: Accessible.PageTabList
        Accessible.name: "Settings"

        UiText {
            role: "title"
            text: "Settings"
            width: parent.width
            leftPadding: 10
            rightPadding: 10
            bottomPadding: 12
        }
        Repeater {
            id: tabs
            model: root.panes
            T.TabButton {
                id: tab
                required property var modelData
                required property int index
                readonly property bool on: root.current === index

                width: sidebar.width
                implicitHeight: Math.round(36 * Theme.scale)
                focusPolicy: Qt.StrongFocus
                focus: on
                hoverEnabled: true
                onClicked: Ui.settingsPane = modelData.key
                Keys.onReturnPressed: clicked()
                Keys.onDownPressed: step(1)
                Keys.onUpPressed: step(-1)
                Keys.onPressed: (event) => {
                    if (event.key === Qt.Key_Home) step(-index)
                    else if (event.key === Qt.Key_End) step(tabs.count - 1 - index)
                    else return
                    event.accepted = true
                }
                Accessible.name: modelData.name
                checked: on
                Accessible.selected: on
                Accessible.onPressAction: tab.clicked()

                function step(by) {
                    const next = tabs.itemAt(index + by)
                    if (!next) return
                    next.forceActiveFocus(Qt.TabFocusReason)
                    next.clicked()
                }

                contentItem: Item {
                    Icon {
                        anchors.left: parent.left
                        anchors.leftMargin: 10
                        anchors.verticalCenter: parent.verticalCenter
                        name: tab.modelData.icon
                        size: Math.round(17 * Theme.scale)
                        color: tab.on ? Theme.accentText : Theme.text2
                    }
                    UiText {
                        anchors.left: parent.left
                        anchors.leftMargin: 20 + Math.round(17 * Theme.scale)
                        width: parent.width - anchors.leftMargin
                        anchors.verticalCenter: parent.verticalCenter
                        role: tab.on ? "body-strong" : "body"
                        text: tab.modelData.name
                        color: tab.on ? Theme.accentText : Theme.text
                        Accessible.ignored: true
                    }
                }
                background: Rectangle {
                    radius: 8
                    color: tab.on ? Theme.accentTint : "transparent"
                    Rectangle {
                        anchors.fill: parent
                        visible: !tab.on && tab.hovered
                        radius: parent.radius
                        color: Theme.text
                        opacity: tab.down ? 0.1 : 0.05
                    }
                    FocusRing { shown: tab.visualFocus; radius: 10; gap: 0 }
                }
            }
        }
    }

    Scroller {
        id: page
        anchors.top: parent.top
        anchors.topMargin: 60
        anchors.bottom: parent.bottom
        anchors.left: sidebar.right
        anchors.leftMargin: 40
        anchors.right: parent.right
        contentSpacing: 0

        Item { width: 1; height: 8 }
        StorageBanner {
            anchors.left: parent.left
            anchors.leftMargin: 8
            width: pane.width
            lines: Settings.trouble
            onDismissed: Settings.dismissTrouble()
        }
        Item { width: 1; height: 14; visible: Settings.trouble.length > 0 }
        Loader {
            id: pane
            anchors.left: parent.left
            anchors.leftMargin: 8
            width: Math.min(792, page.width - 8 - 24)
            source: root.panes[root.current].file
            onLoaded: { page.contentY = 0; arrival.restart() }
            NumberAnimation on opacity {
                id: arrival
                running: false
                from: 0
                to: 1
                duration: Theme.fade(180)
                easing.type: Easing.OutCubic
            }
        }
        Item { width: 1; height: 24 }
    }
}
