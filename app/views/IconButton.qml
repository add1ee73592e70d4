// A button with a symbol only; its tooltip is its name.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Button {
    id: control
    property string iconName
    property string tip
    property real size: 34
    property real iconSize: size >= 34 ? 18 : 16
    property bool filled: false
    property color ink: filled ? Theme.onAccent : Theme.text2

    implicitWidth: size
    implicitHeight: size
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.name: tip
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: control.iconName
            size: control.iconSize
            color: control.ink
        }
    }
    background: Rectangle {
        radius: 9
        color: !control.filled ? "transparent"
               : control.down ? Theme.accentPress : control.hovered ? Theme.accentHover : Theme.accent
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            visible: !control.filled && (control.hovered || control.down)
            color: Theme.text
            opacity: control.down ? 0.1 : 0.06
        }
        FocusRing {
            shown: control.visualFocus
            radius: parent.radius + 4
        }
    }
    ToolTip {
        visible: (control.hovered || control.visualFocus) && !control.down
        text: control.tip
    }
}
