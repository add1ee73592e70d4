// Something chosen that can be taken away again.
import QtQuick
import Quillo.Core

Rectangle {
    id: root
    property string text
    signal removed()

    implicitHeight: Math.round(28 * Theme.scale)
    implicitWidth: words.width + 12 + 6 + remove.width
    radius: height / 2
    color: Theme.sunken

    UiText {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: 12
        width: Math.min(implicitWidth, 260)
        elide: Text.ElideMiddle
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
    }
    IconButton {
        id: remove
        anchors.right: parent.right
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        size: 24
        iconSize: 13
        iconName: "x"
        tip: "Remove " + root.text
        onClicked: root.removed()
    }
}
