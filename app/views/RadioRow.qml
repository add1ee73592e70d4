// One choice of several, each on a row of its own.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.RadioButton {
    id: control
    signal picked()

    readonly property real size: Math.round(16 * Theme.scale)

    width: parent ? parent.width : implicitWidth
    implicitHeight: Math.round(34 * Theme.scale)
    implicitWidth: words.implicitWidth + size + 12
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    onClicked: picked()
    Keys.onReturnPressed: clicked()
    Accessible.name: text
    Accessible.onPressAction: control.clicked()

    contentItem: Item {
        Rectangle {
            id: disc
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: control.size
            height: control.size
            radius: width / 2
            color: control.checked ? Theme.accent : Theme.surface
            border.width: control.checked ? 0 : 1
            border.color: control.hovered ? Theme.text3 : Theme.borderStrong
            Rectangle {
                anchors.centerIn: parent
                visible: control.checked
                width: Math.round(6 * Theme.scale)
                height: width
                radius: width / 2
                color: Theme.onAccent
            }
            FocusRing { shown: control.visualFocus; radius: width / 2 }
        }
        UiText {
            id: words
            anchors.left: parent.left
            anchors.leftMargin: control.size + 10
            width: Math.min(implicitWidth, parent.width - control.size - 10)
            anchors.verticalCenter: parent.verticalCenter
            text: control.text
            Accessible.ignored: true
        }
    }
}
