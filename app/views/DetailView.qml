// One workspace: its desktop, what is in it, and what can be done with it.
import QtQuick
import Quillo.Core

FocusScope {
    id: root
    readonly property bool narrow: width < 900
    readonly property real side: Math.round(Math.min(328 * Theme.scale, width * 0.4))

    Item {
        id: bar
        x: 24
        width: parent.width - 48
        height: Math.max(60, done.height + 26)
        PushButton {
            anchors.left: parent.left
            anchors.leftMargin: -12
            anchors.verticalCenter: parent.verticalCenter
            kind: "plain"
            iconName: root.LayoutMirroring.enabled ? "arrow-right" : "arrow-left"
            text: "Back to workspaces · esc"
            onClicked: Ui.back()
        }
        PushButton {
            id: done
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: "Done"
            onClicked: Ui.back()
        }
    }

    Scroller {
        id: page
        anchors.top: bar.bottom
        anchors.bottom: parent.bottom
        width: parent.width

        Item {
            width: parent.width
            height: Math.max(left.y + left.height, right.y + right.height) + 24

            Column {
                id: left
                anchors.left: parent.left
                anchors.leftMargin: 24
                width: root.narrow ? parent.width - 48 : parent.width - 48 - root.side - 32
                spacing: 0

                Rectangle {
                    readonly property var colors: Theme.workspaces[Detail.colorName] || Theme.workspaces["slate"]
                    width: parent.width
                    height: Math.max(220, Math.min(Math.max(380, root.height * 0.5), width * 0.48))
                    radius: 16
                    color: colors.tint
                    DesktopMap {
                        anchors.fill: parent
                        style: "detail"
                        colorName: Detail.colorName
                        source: Detail.map
                    }
                }
                Item { width: 1; height: 24; visible: !root.narrow }
                UiText {
                    visible: !root.narrow
                    x: 8
                    width: parent.width - 16
                    role: "body-strong"
                    text: "In this workspace"
                    bottomPadding: 8
                }
                AppGrid { visible: !root.narrow; width: parent.width }
            }

            Column {
                id: right
                anchors.right: parent.right
                anchors.rightMargin: 24
                y: root.narrow ? left.height + 24 : 0
                width: root.narrow ? parent.width - 48 : root.side

                Row {
                    width: parent.width
                    spacing: 14
                    Badge { id: badge; size: 56; icon: Detail.icon; colorName: Detail.colorName }
                    Column {
                        width: parent.width - 56 - 14
                        anchors.verticalCenter: parent.verticalCenter
                        spacing: 2
                        EditableName {
                            width: parent.width
                            name: Detail.name
                            onRenamed: (name) => Detail.rename(name)
                        }
                        UiText { role: "caption"; width: parent.width; text: Detail.saved; color: Theme.text2 }
                        UiText {
                            role: "caption"
                            width: parent.width
                            visible: text !== ""
                            text: Detail.lastResumed
                            color: Theme.text2
                        }
                    }
                }
                Item { width: 1; height: 20 }
                Rectangle {
                    width: parent.width
                    height: Math.round(66 * Theme.scale)
                    radius: 12
                    color: Theme.surface
                    border.width: 1
                    border.color: Theme.border
                    Row {
                        anchors.fill: parent
                        Repeater {
                            model: Detail.counts
                            Column {
                                required property var modelData
                                width: parent.width / Detail.counts.length
                                anchors.verticalCenter: parent.verticalCenter
                                Accessible.role: Accessible.StaticText
                                Accessible.name: modelData.count + " " + modelData.noun
                                UiText {
                                    anchors.horizontalCenter: parent.horizontalCenter
                                    role: "title"
                                    text: modelData.count
                                    Accessible.ignored: true
                                }
                                UiText {
                                    anchors.horizontalCenter: parent.horizontalCenter
                                    role: "caption"
                                    color: Theme.text2
                                    text: modelData.noun
                                    Accessible.ignored: true
                                }
                            }
                        }
                    }
                }
                Item { width: 1; height: 16 }
                PushButton {
                    width: parent.width
                    large: true
                    kind: "primary"
                    iconName: "rotate-ccw"
                    text: "Resume workspace"
                    focus: true
                    enabled: Detail.canResume
                    onClicked: Detail.resume()
                }
                Item { width: 1; height: 26 }
                UiText { width: parent.width; role: "body-strong"; text: "When resuming"; bottomPadding: 6 }
                Repeater {
                    model: Detail.cleanSlateLabels
                    RadioRow {
                        required property string modelData
                        required property int index
                        text: modelData
                        checked: Detail.cleanSlate === index
                        onPicked: Detail.setCleanSlate(index)
                    }
                }
                UiText {
                    anchors.left: parent.left
                    anchors.leftMargin: 10 + Math.round(16 * Theme.scale)
                    width: parent.width - anchors.leftMargin
                    bottomPadding: 4
                    role: "caption"
                    color: Theme.text2
                    visible: Detail.cleanSlate === 2
                    wrapMode: Text.Wrap
                    text: Ui.text("Quit asks other regular apps to close normally. Apps with unsaved changes may stay open. Finder and Quillo stay open.")
                }
                Item { width: 1; height: 14 }
                Rectangle { width: parent.width; height: 1; color: Theme.border }
                Item { width: 1; height: 10 }
                ActionRow {
                    iconName: "refresh-cw"
                    text: "Update from Current Desktop"
                    enabled: Detail.canResume
                    onClicked: Library.update(Detail.workspaceId)
                }
                ActionRow {
                    visible: Detail.hasReport
                    iconName: "history"
                    text: "Show Last Report"
                    enabled: Detail.canResume
                    onClicked: Detail.showReport()
                }
                ActionRow {
                    iconName: "upload"
                    text: "Export Workspace…"
                    onClicked: Library.exportWorkspace(Detail.workspaceId)
                }
                ActionRow {
                    iconName: "copy"
                    text: "Duplicate Workspace"
                    onClicked: Library.duplicate(Detail.workspaceId)
                }
                ActionRow {
                    iconName: "trash-2"
                    text: "Delete Workspace"
                    danger: true
                    onClicked: confirmation.open()
                }
                Item { width: 1; height: 20; visible: root.narrow }
                UiText {
                    visible: root.narrow
                    width: parent.width
                    role: "body-strong"
                    text: "In this workspace"
                    bottomPadding: 8
                }
                AppGrid { visible: root.narrow; width: parent.width }
            }
        }
    }
    DeleteDialog {
        id: confirmation
        name: Detail.name
        onConfirmed: Library.remove(Detail.workspaceId)
    }
}
