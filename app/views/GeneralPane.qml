// How the program starts, looks, is called, and what it saves by itself.
import QtQuick
import Quillo.Core

Column {
    spacing: 14

    SettingGroup {
        SettingRow {
            title: "Open Quillo at login"
            toggle: login
            caption: Settings.loginError !== "" ? Settings.loginError
                     : Settings.loginRefusal !== "" ? Settings.loginRefusal
                     : Settings.loginNeedsApproval ? Ui.text("Allow Quillo in System Settings to finish enabling this.")
                     : Closing.withoutTray ? "Keep Quillo's shortcuts at hand after you log in."
                     : Ui.text("Keep Quillo handy in the menu bar after you log in.")
            captionColor: Settings.loginError !== "" ? Theme.danger
                          : Settings.loginNeedsApproval ? Theme.warning : Theme.text2
            Row {
                spacing: 12
                PushButton {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: Settings.loginNeedsApproval && Settings.canOpenLoginSettings
                    compact: true
                    text: "Allow in Settings"
                    onClicked: Settings.openLoginSettings()
                }
                Toggle {
                    id: login
                    anchors.verticalCenter: parent.verticalCenter
                    visible: Settings.loginRefusal === ""
                    label: "Open Quillo at login"
                    checked: Settings.openAtLogin
                    onToggled: Settings.openAtLogin = !Settings.openAtLogin
                }
            }
        }
        SettingRow {
            id: closing
            visible: Closing.withoutTray && Closing.canQuit
            height: visible ? implicitHeight : 0
            title: "When the window is closed"
            caption: "This desktop shows no tray: starting Quillo again or its shortcuts bring it back."
            Segmented {
                label: closing.title
                model: ["Ask", "Keep running", "Quit"]
                current: Closing.choice
                onPicked: (index) => Closing.choice = index
            }
        }
        SettingRow {
            title: "Appearance"
            separator: access.visible
            Segmented {
                label: "Appearance"
                model: ["System", "Light", "Dark"]
                current: Settings.appearance
                onPicked: (index) => Settings.appearance = index
            }
        }
        SettingRow {
            id: access
            visible: Settings.canAllowAccess
            height: visible ? implicitHeight : 0
            separator: false
            title: "Accessibility"
            caption: Settings.accessGranted || Settings.accessRefusal === ""
                     ? "Lets Quillo read window titles and positions, and move windows back." : Settings.accessRefusal
            captionColor: Settings.accessGranted ? Theme.text2 : Theme.warning
            Row {
                spacing: 6
                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: Settings.accessGranted
                    name: "check"
                    size: Math.round(15 * Theme.scale)
                    color: Theme.success
                }
                UiText {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: Settings.accessGranted
                    role: "body-medium"
                    text: "Allowed"
                    color: Theme.success
                }
                PushButton {
                    visible: !Settings.accessGranted
                    compact: true
                    text: "Allow in Settings"
                    onClicked: Settings.allowAccess()
                }
            }
        }
    }

    SettingGroup {
        SettingRow {
            title: "Global shortcuts"
            separator: Shortcuts.refusal === ""
            caption: Shortcuts.refusal !== "" ? Shortcuts.refusal : "Work in any app, even when Quillo isn't in front."
            captionColor: Shortcuts.refusal !== "" ? Theme.warning : Theme.text2
            Toggle {
                visible: Shortcuts.refusal === ""
                label: "Global shortcuts"
                checked: Shortcuts.enabled
                onToggled: Shortcuts.enabled = !Shortcuts.enabled
            }
        }
        SettingRow {
            visible: Shortcuts.refusal === ""
            height: visible ? implicitHeight : 0
            sub: true
            title: "Open workspace switcher"
            caption: Shortcuts.switcherRefusal !== "" ? Shortcuts.switcherRefusal : "Jump between saved workspaces."
            captionColor: Shortcuts.switcherRefusal !== "" ? Theme.danger : Theme.text2
            ShortcutField { action: "switcher" }
        }
        SettingRow {
            visible: Shortcuts.refusal === ""
            height: visible ? implicitHeight : 0
            sub: true
            title: "Save current desktop"
            caption: Shortcuts.saveRefusal !== "" ? Shortcuts.saveRefusal : "Snapshot every open window into a workspace."
            captionColor: Shortcuts.saveRefusal !== "" ? Theme.danger : Theme.text2
            ShortcutField { action: "save" }
        }
        SettingNote {
            visible: Shortcuts.refusal === ""
            text: Ui.text(Shortcuts.hint)
        }
    }

    SettingGroup {
        SettingRow {
            title: "Save the last session"
            caption: Ui.text("Off by default. When enabled, saves changed sessions on this Mac and keeps the latest five. Uses your app exclusions and enabled integrations. Sleep and shutdown captures are best-effort; periodic saves provide recovery after a crash.")
            Toggle {
                label: "Save the last session"
                checked: Settings.savesSessions
                onToggled: Settings.savesSessions = !Settings.savesSessions
            }
        }
        SettingRow {
            id: interval
            visible: Settings.savesSessions
            height: visible ? implicitHeight : 0
            sub: true
            title: "Snapshot interval"
            PopUpButton {
                label: "Snapshot interval"
                compact: true
                trailing: !interval.stacked
                model: Settings.intervals
                current: Settings.interval
                onPicked: (index) => Settings.interval = index
            }
        }
        Item {
            width: parent.width
            implicitHeight: sessions.height + 16
            Flow {
                id: sessions
                x: 16
                y: 8
                width: parent.width - 32
                spacing: 8
                PushButton {
                    compact: true
                    iconName: "history"
                    text: "Restore last session"
                    enabled: Settings.canRestore
                    onClicked: Settings.restoreLastSession()
                }
                PopUpButton {
                    property var earlier: []
                    text: "Restore earlier…"
                    compact: true
                    enabled: Settings.canRestore && Settings.sessionCount > 1
                    current: -1
                    model: earlier.map(session => session.text)
                    onAboutToOpen: earlier = Settings.earlierSessions()
                    onPicked: (index) => Settings.restoreSession(earlier[index].key)
                }
            }
        }
        SettingNote {
            visible: Settings.sessionCount === 0
            text: Settings.savesSessions ? "No session has been saved yet." : "No session is saved."
        }
        SettingNote {
            visible: Settings.sessionError !== ""
            iconName: "triangle-alert"
            ink: Theme.danger
            text: Settings.sessionError
        }
    }

    SettingGroup {
        visible: Settings.updatesRefusal === ""
        SettingRow {
            separator: false
            title: "Automatic updates"
            caption: "Check hourly and prepare updates without interrupting your work."
            Toggle {
                label: "Automatic updates"
                checked: Settings.automaticUpdates
                onToggled: Settings.automaticUpdates = !Settings.automaticUpdates
            }
        }
    }
}
