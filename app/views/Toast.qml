// The message of the moment.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Rectangle {
    id: root
    property string text
    property string kind: "done"
    property bool shown: false
    property bool undoes: false  // what it tells of
    readonly property bool stays: shown && kind === "failure"
    signal undone()
    signal dismissed()

    visible: opacity > 0
    opacity: shown ? 1 : 0
    width: row.width + (undoes ? 24 : 32) + (stays ? close.width : 0)
    height: Math.max(40, words.height + 20)
    radius: 20
    color: Theme.tooltip
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text
    Accessible.ignored: !shown
    Behavior on opacity { NumberAnimation { duration: Theme.fade(root.shown ? 160 : 120) } }
    transform: Translate {
        y: root.shown || Theme.reducedMotion ? 0 : 8
        Behavior on y { NumberAnimation { duration: Theme.reducedMotion ? 0 : 160; easing.type: Easing.OutCubic } }
    }
    Shadow { level: 3; radius: 20 }
    Row {
        id: row
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 9
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            name: root.kind === "done" ? "check" : "triangle-alert"
            color: root.kind === "done" ? "white" : "#EDB64B"
            size: Math.round(16 * Theme.scale)
        }
        UiText {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            role: "body-medium"
            readonly property real room: (root.parent ? root.parent.width : 0) - 48
            readonly property real most: Math.min(480 * Theme.scale, room - 41 - 16 * Theme.scale
                                                  - (undo.visible ? undo.width + row.spacing : 0) - (root.stays ? close.width : 0))
            width: Math.min(implicitWidth, most)
            wrapMode: implicitWidth > most ? Text.Wrap : Text.NoWrap
            maximumLineCount: root.kind === "failure" ? 8 : 4
            elide: Text.ElideRight
            text: root.text
            color: "white"
        }
        T.Button {
            id: undo
            visible: root.undoes
            anchors.verticalCenter: parent.verticalCenter
            width: visible ? undoWords.implicitWidth + 20 : 0
            height: Math.round(28 * Theme.scale)
            focusPolicy: Qt.NoFocus  // the keyboard has the command itself
            hoverEnabled: true
            Accessible.name: "Undo"
            Accessible.onPressAction: undo.clicked()
            onClicked: root.undone()
            contentItem: UiText {
                id: undoWords
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                role: "body-strong"
                text: "Undo"
                color: "white"
                font.underline: undo.hovered
                Accessible.ignored: true
            }
            background: Rectangle {
                radius: height / 2
                color: Qt.rgba(1, 1, 1, undo.down ? 0.28 : undo.hovered ? 0.22 : 0.14)
            }
        }
    }
    IconButton {
        id: close
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: root.stays
        size: 28
        iconName: "x"
        ink: "white"
        tip: "Dismiss"
        onClicked: root.dismissed()
    }
}
