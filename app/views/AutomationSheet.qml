// What brings the workspace of the page back besides its button.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Sheet {
    id: sheet
    width: Math.min(460, (parent ? parent.width : 500) - 40)
    onVisibleChanged: {
        clock.refusal = ""
        time.text = Qt.binding(() => Automation.time)
        if (visible) done.forceActiveFocus(Qt.TabFocusReason)
        else Shortcuts.stopRecording()
    }

    contentItem: Column {
        spacing: 12
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true
        Accessible.role: Accessible.Dialog
        Accessible.name: "Shortcut and automation"
        UiText { width: parent.width; role: "heading"; text: "When to resume “" + Detail.name + "”"; wrapMode: Text.Wrap }
        Scroller {
            readonly property real room: (sheet.parent ? sheet.parent.height : 600) - 190 * Theme.scale
            width: parent.width
            height: Math.min(contentHeight, Math.max(120, room))
            SettingGroup {
                SettingRow {
                    title: "By a shortcut"
                    caption: Shortcuts.refusal !== "" ? Shortcuts.refusal
                             : Shortcuts.workspaceRefusal !== "" ? Shortcuts.workspaceRefusal
                             : !Shortcuts.enabled ? "Global shortcuts are off in Settings."
                             : Ui.text("In any app. Include ⌘, ⌃ or ⌥; ⌫ removes it.")
                    captionColor: Shortcuts.workspaceRefusal !== "" ? Theme.danger : Theme.text2
                    ShortcutField { action: "workspace" }
                }
                SettingRow {
                    title: "After login"
                    caption: Settings.loginRefusal !== "" ? Settings.loginRefusal
                             : !Settings.openAtLogin ? "Needs “Open Quillo at login” in Settings."
                             : "As soon as windows can be placed. Only one workspace can have this."
                    captionColor: Automation.atLogin && !Settings.openAtLogin ? Theme.warning : Theme.text2
                    Toggle {
                        label: "After login"
                        enabled: Automation.atLogin || Settings.loginRefusal === ""
                        checked: Automation.atLogin
                        onToggled: Automation.atLogin = !Automation.atLogin
                    }
                }
                SettingRow {
                    id: clock
                    property string refusal
                    title: "At a time"
                    separator: Automation.days === 0
                    caption: "While Quillo runs. After sleep, up to an hour late."
                    Segmented {
                        label: clock.title
                        model: Automation.dayChoices
                        current: Automation.days
                        onPicked: (index) => Automation.days = index
                    }
                }
                SettingRow {
                    visible: Automation.days > 0
                    height: visible ? implicitHeight : 0
                    sub: true
                    title: "Time of day"
                    caption: clock.refusal
                    captionColor: Theme.danger
                    Field {
                        id: time
                        width: Math.round(90 * Theme.scale)
                        maximumLength: 8
                        text: Automation.time
                        Accessible.name: "Time of day, as 09:30"
                        Accessible.description: clock.refusal
                        onEdited: clock.refusal = ""
                        onEditingFinished: {
                            clock.refusal = Automation.setTime(text)
                            if (clock.refusal === "") text = Qt.binding(() => Automation.time)
                        }
                    }
                }
                SettingRow {
                    title: "When its displays are attached"
                    caption: "Exactly those it was saved with, and only at the moment they come."
                    Toggle {
                        label: "When its displays are attached"
                        checked: Automation.atDisplays
                        onToggled: Automation.atDisplays = !Automation.atDisplays
                    }
                }
                SettingRow {
                    separator: false
                    title: "When others ask, without a question"
                    caption: "A link (quillo:restore?name=…) or another program may have it resumed. Otherwise you are asked each time."
                    Toggle {
                        label: "When others ask, without a question"
                        checked: Automation.withoutAsking
                        onToggled: Automation.withoutAsking = !Automation.withoutAsking
                    }
                }
            }
        }
        PushButton {
            id: done
            anchors.right: parent.right
            text: "Done"
            onClicked: sheet.close()
        }
    }
}
