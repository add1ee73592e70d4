// Something that can be done, as a row with a symbol.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Button {
    id: control
    property string iconName
    property bool danger: false

    width: parent ? parent.width : implicitWidth
    implicitWidth: 200
    implicitHeight: Math.round(34 * Theme.scale)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Keys.onReturnPressed: clicked()
    Accessible.name: text
    Accessible.onPressAction: control.clicked()

    contentItem: Item {
        Icon {
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            name: control.iconName
            size: Math.round(16 * Theme.scale)
            color: control.danger ? Theme.danger : Theme.text2
        }
        UiText {
            anchors.left: parent.left
            anchors.leftMargin: 10 + Math.round(16 * Theme.scale)
            width: parent.width - anchors.leftMargin
            anchors.verticalCenter: parent.verticalCenter
            text: control.text
            color: control.danger ? Theme.danger : Theme.text
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -8
        anchors.rightMargin: -8
        radius: 8
        color: control.danger ? Theme.dangerTint : Theme.text
        opacity: control.hovered || control.down ? control.danger ? 1 : control.down ? 0.1 : 0.05 : 0
    }
    FocusRing {  // where the pointer's mark is too
        anchors.leftMargin: -8
        anchors.rightMargin: -8
        shown: control.visualFocus
        radius: 8
        gap: -2
    }
}
