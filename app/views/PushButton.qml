// A button with words: kind is "normal", "primary", "danger" or "plain".
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Button {
    id: control
    property string iconName
    property string kind: "normal"
    property bool large: false
    property bool compact: false
    property string tip
    readonly property color ink: kind === "primary" ? Theme.onAccent : kind === "danger" ? Theme.danger
                                : kind === "plain" && !hovered ? Theme.text2 : Theme.text

    implicitHeight: Math.round((large ? 40 : compact ? 30 : 32) * Theme.scale)
    implicitWidth: Math.ceil(row.implicitWidth) + 28  // whole pixels, for edges in line
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.4
    hoverEnabled: true
    Accessible.name: text
    Accessible.description: tip
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: 7
            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: control.iconName !== ""
                width: visible ? size : 0
                name: control.iconName
                size: Math.round(16 * Theme.scale)
                color: control.kind === "normal" ? Theme.text2 : control.ink
            }
            UiText {
                anchors.verticalCenter: parent.verticalCenter
                role: control.large ? "name" : control.kind === "primary" ? "body-strong" : "body-medium"
                text: control.text
                color: control.ink
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: control.large ? 10 : 8
        color: control.kind === "primary"
               ? control.down ? Theme.accentPress : control.hovered ? Theme.accentHover : Theme.accent
               : control.kind === "plain" ? "transparent" : Theme.raised
        border.width: control.kind === "primary" || control.kind === "plain" ? 0 : 1
        border.color: Theme.borderStrong
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: control.kind !== "primary" && (control.hovered || control.down)
            color: control.kind === "danger" ? Theme.dangerTint : Theme.text
            opacity: control.kind === "danger" ? 0.6 : control.down ? 0.1 : 0.04
        }
        FocusRing {
            shown: control.visualFocus
            radius: parent.radius + 4
        }
    }
    ToolTip {
        visible: control.hovered && control.tip !== ""
        text: control.tip
    }
}
