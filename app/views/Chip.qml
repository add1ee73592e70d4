// Something chosen that can be taken away again.
import QtQuick
import Quillo.Core

Rectangle {
    id: root
    property string text
    property real maximum: 300
    signal removed()

    implicitHeight: Math.round(28 * Theme.scale)
    implicitWidth: words.width + 18 + remove.width
    radius: height / 2
    color: Theme.sunken

    UiText {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: 12
        width: Math.min(Math.ceil(implicitWidth), root.maximum - 18 - remove.width)
        elide: Text.ElideMiddle
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
    }
    IconButton {
        id: remove
        anchors.right: parent.right
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        size: Math.round(24 * Theme.scale)
        iconSize: Math.round(13 * Theme.scale)
        iconName: "x"
        tip: "Remove " + root.text
        onClicked: root.removed()
    }
}
