// What brings the workspace of the page back besides its button.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Sheet {
    id: sheet
    width: Math.min(460, (parent ? parent.width : 500) - 40)
    onVisibleChanged: {
        if (visible) done.forceActiveFocus(Qt.TabFocusReason)
        else Shortcuts.stopRecording()
    }

    contentItem: Column {
        spacing: 12
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true
        Accessible.role: Accessible.Dialog
        Accessible.name: "Shortcut and automation"
        UiText { width: parent.width; role: "heading"; text: "Resume “" + Detail.name + "”"; wrapMode: Text.Wrap }
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
                separator: false
                title: "When others ask, without a question"
                caption: "A link (quillo:restore?name=…) or another program may have it resumed. Else you are asked each time."
                Toggle {
                    label: "When others ask, without a question"
                    checked: Automation.withoutAsking
                    onToggled: Automation.withoutAsking = !Automation.withoutAsking
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
