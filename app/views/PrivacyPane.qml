// What never enters a workspace, and how everything is deleted.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Column {
    id: pane
    spacing: 14

    SettingGroup {
        SettingRow {
            id: exclude
            title: "Excluded apps"
            PopUpButton {
                id: running
                property var apps: []
                compact: true
                trailing: !exclude.stacked
                text: "Exclude a running app…"
                emptyText: "No other app is running"
                current: -1
                model: apps.map(app => app.name)
                onAboutToOpen: apps = Privacy.runningApps()
                onPicked: (index) => Privacy.excludeApp(apps[index].key)
            }
        }
        Repeater {
            model: Privacy.excludedApps
            Item {
                required property string key
                required property string name
                width: parent.width
                implicitHeight: Math.round(42 * Theme.scale)
                AppIcon {
                    anchors.left: parent.left
                    anchors.leftMargin: 16
                    anchors.verticalCenter: parent.verticalCenter
                    identifier: key
                    name: parent.name
                    size: Math.round(24 * Theme.scale)
                }
                UiText {
                    anchors.left: parent.left
                    anchors.leftMargin: 27 + Math.round(24 * Theme.scale)
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - anchors.leftMargin - 60
                    role: "body-medium"
                    text: parent.name
                }
                IconButton {
                    anchors.right: parent.right
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    size: Math.round(26 * Theme.scale)
                    iconSize: Math.round(16 * Theme.scale)
                    iconName: "x"
                    tip: "Stop excluding " + parent.name
                    onClicked: Privacy.includeApp(parent.key)
                }
                Rectangle {
                    anchors.left: parent.left
                    anchors.leftMargin: 16
                    width: parent.width - 16
                    height: 1
                    anchors.bottom: parent.bottom
                    color: Theme.border
                }
            }
        }
        SettingNote {
            text: Ui.text("Password managers and system security windows are always excluded. You can also leave out single windows when saving.")
        }
    }

    SettingGroup {
        // Where no integration reads websites, what was chosen elsewhere can still be seen and taken back.
        visible: Privacy.adaptersRefusal === "" || domains.count > 0
        SettingRow {
            title: "Excluded websites"
            caption: "Quillo skips matching domains and all of their subdomains when capturing browser context."
        }
        Column {
            width: parent.width
            topPadding: 12
            bottomPadding: 14
            spacing: 12
            Row {
                x: 16
                width: parent.width - 32
                spacing: 8
                Field {
                    id: domain
                    width: parent.width - add.width - 8
                    iconName: "globe"
                    prompt: "example.com"
                    Accessible.name: "Website to exclude"
                    onEdited: refusal.text = ""
                    onAccepted: pane.addDomain()
                }
                PushButton {
                    id: add
                    height: domain.height
                    text: "Add"
                    onClicked: pane.addDomain()
                }
            }
            UiText {
                id: refusal
                x: 16
                width: parent.width - 32
                visible: text !== ""
                role: "caption"
                color: Theme.danger
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
            }
            Flow {
                x: 16
                width: parent.width - 32
                spacing: 8
                visible: domains.count > 0
                Repeater {
                    id: domains
                    model: Privacy.excludedDomains
                    Chip {
                        required property string key
                        text: key
                        maximum: parent.width
                        onRemoved: Privacy.includeDomain(key)
                    }
                }
            }
        }
    }

    SettingNote {
        visible: Privacy.adaptersRefusal !== ""  // else beside the integrations
        x: 1
        width: parent.width - 2
        text: Ui.text("Documents and folders that apps report themselves (TextEdit, Preview, Xcode, Ghostty…) are reopened without an integration.")
    }

    // What was typed stays where something in it is no website.
    function addDomain() {
        refusal.text = Privacy.excludeDomains(domain.text)
        if (refusal.text === "") domain.clear()
        domain.forceActiveFocus()
    }

    Rectangle {
        width: parent.width
        implicitHeight: promise.height + 28
        radius: 12
        color: Theme.successTint
        Icon {
            anchors.left: parent.left
            anchors.leftMargin: 16
            y: 14
            name: "shield-check"
            size: Math.round(18 * Theme.scale)
            color: Theme.success
        }
        UiText {
            id: promise
            anchors.left: parent.left
            anchors.leftMargin: 28 + Math.round(18 * Theme.scale)
            y: 14
            width: Math.min(parent.width - anchors.leftMargin - 16, 580 * Theme.scale)
            text: Ui.text("Workspaces are plain JSON on this Mac. Nothing is uploaded, and window titles, paths and URLs are never written to logs.")
            wrapMode: Text.Wrap
        }
    }
    Item {
        width: parent.width
        implicitHeight: erase.height + 10
        PushButton {
            id: erase
            anchors.left: parent.left
            y: 10
            kind: "danger"
            iconName: "trash-2"
            text: "Delete all workspace data…"
            onClicked: confirm.open()
        }
    }
    Dialog {
        id: confirm
        title: "Delete all saved workspaces?"
        text: "This also deletes the saved sessions. Your apps and files are not affected."
        actionText: "Delete Everything"
        danger: true
        onConfirmed: Privacy.deleteAllData()
    }
}
