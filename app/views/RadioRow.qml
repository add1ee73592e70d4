// One choice of several, each on a row of its own.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.RadioButton {
    id: control
    signal picked()

    implicitHeight: Math.round(34 * Theme.scale)
    implicitWidth: words.implicitWidth + 28
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    onClicked: picked()
    Keys.onReturnPressed: clicked()
    Accessible.name: text
    Accessible.onPressAction: control.clicked()

    contentItem: Item {
        Rectangle {
            id: disc
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            radius: 8
            color: control.checked ? Theme.accent : Theme.surface
            border.width: control.checked ? 0 : 1
            border.color: control.hovered ? Theme.text3 : Theme.borderStrong
            Rectangle {
                anchors.centerIn: parent
                visible: control.checked
                width: 6
                height: 6
                radius: 3
                color: Theme.onAccent
            }
            FocusRing { shown: control.visualFocus; radius: 12 }
        }
        UiText {
            id: words
            anchors.left: parent.left
            anchors.leftMargin: 26
            width: Math.min(implicitWidth, control.width - 26)
            anchors.verticalCenter: parent.verticalCenter
            text: control.text
            Accessible.ignored: true
        }
    }
}
