// A global shortcut; activated, it takes the next key combination.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Item {
    id: root
    property string action  // "save", "switcher" or "workspace"
    readonly property var recorder: Shortcuts[action]
    readonly property string refusal: Shortcuts[action + "Refusal"]
    readonly property bool recording: recorder.recording
    readonly property string subject: action === "save" ? "Shortcut for saving" : action === "switcher"
                                      ? "Shortcut for the switcher" : "Shortcut for this workspace"
    readonly property string words: recording ? "Press a new key combination" : recorder.label === "" ? "None" : ""

    implicitWidth: control.implicitWidth
    implicitHeight: control.implicitHeight
    Component.onDestruction: Shortcuts.stopRecording()

    T.AbstractButton {
        id: control
        anchors.fill: parent
        enabled: root.recorder.enabled
        implicitHeight: Math.max(32, keys.height + 8)
        implicitWidth: root.words !== "" ? Math.ceil(ask.implicitWidth) + 24 : Math.ceil(keys.width) + 8
        focusPolicy: Qt.StrongFocus
        hoverEnabled: true
        opacity: enabled ? 1 : 0.4
        onClicked: {
            if (root.recording) return root.recorder.stop()
            if (!activeFocus) forceActiveFocus(Qt.MouseFocusReason)
            root.recorder.start()
        }
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onActiveFocusChanged: if (!activeFocus) root.recorder.stop()
        Accessible.role: Accessible.Button
        Accessible.name: root.subject + ": " + (root.words || Ui.shortcut(root.recorder.label))
        Accessible.description: root.refusal !== "" ? root.refusal + " " + Shortcuts.help : Shortcuts.help
        Accessible.onPressAction: control.clicked()

        contentItem: Item {
            KeyCaps {
                id: keys
                anchors.centerIn: parent
                visible: root.words === ""
                label: root.recorder.label
                Accessible.ignored: true
            }
            UiText {
                id: ask
                anchors.centerIn: parent
                visible: root.words !== ""
                role: "caption"
                text: root.words
                color: Theme.text2
                Accessible.ignored: true
            }
        }
        background: Item {
            Rectangle {
                anchors.fill: parent
                anchors.margins: -3
                visible: root.recording
                radius: 12
                color: Theme.focus
                opacity: 0.28
            }
            Rectangle {
                anchors.fill: parent
                radius: 9
                color: Theme.surface
                border.width: 1
                border.color: root.recording ? Theme.focus : root.refusal !== "" ? Theme.danger
                              : control.hovered ? Theme.text3 : Theme.borderStrong
                FocusRing {
                    shown: control.visualFocus && !root.recording
                    radius: parent.radius + 4
                }
            }
        }
        ToolTip {
            visible: control.hovered && !root.recording
            text: Shortcuts.help
        }
    }
}
