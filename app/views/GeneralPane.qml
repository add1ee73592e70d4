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
                     : Settings.loginNeedsApproval ? Ui.text("Allow Quillo in System Settings to finish enabling this.")
                     : Ui.text("Keep Quillo handy in the menu bar after you log in.")
            captionColor: Settings.loginError !== "" ? Theme.danger
                          : Settings.loginNeedsApproval ? Theme.warning : Theme.text2
            Row {
                spacing: 12
                PushButton {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: Settings.loginNeedsApproval && !Ui.onLinux
                    compact: true
                    text: "Allow in Settings"
                    onClicked: Settings.openLoginSettings()
                }
                Toggle {
                    id: login
                    anchors.verticalCenter: parent.verticalCenter
                    label: "Open Quillo at login"
                    checked: Settings.openAtLogin
                    onToggled: Settings.openAtLogin = !Settings.openAtLogin
                }
            }
        }
        SettingRow {
            title: "Appearance"
            Segmented {
                label: "Appearance"
                model: ["System", "Light", "Dark"]
                current: Settings.appearance
                onPicked: (index) => Settings.appearance = index
            }
        }
        SettingRow {
            separator: false
            title: Ui.onLinux ? "Window access" : "Accessibility"
            caption: Settings.accessGranted || Settings.accessRefusal === ""
                     ? Ui.text("Lets Quillo read window titles and positions, and move windows back.")
                     : Settings.accessRefusal
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
                    visible: !Settings.accessGranted && Settings.canAllowAccess
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
            sub: true
            title: "Jump between saved workspaces."
            caption: Shortcuts.switcherRefusal
            captionColor: Theme.danger
            ShortcutField { action: "switcher" }
        }
        SettingRow {
            sub: true
            separator: Shortcuts.refusal === ""
            title: "Snapshot every open window into a workspace."
            caption: Shortcuts.saveRefusal
            captionColor: Theme.danger
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
        SettingRow {
            separator: false
            title: "Automatic updates"
            caption: Settings.updatesRefusal !== "" ? Settings.updatesRefusal
                     : "Check hourly and prepare updates without interrupting your work."
            Toggle {
                visible: Settings.updatesRefusal === ""
                label: "Automatic updates"
                checked: Settings.automaticUpdates
                onToggled: Settings.automaticUpdates = !Settings.automaticUpdates
            }
        }
    }
}
