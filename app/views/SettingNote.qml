// A remark at the end of a group of settings.
import QtQuick
import Quillo.Core

Item {
    id: root
    property string text
    property string iconName
    property color ink: Theme.text3

    width: parent ? parent.width : 400
    implicitHeight: visible ? words.height + 16 : 0

    Icon {
        visible: root.iconName !== ""
        anchors.left: parent.left
        anchors.leftMargin: 16
        y: 9
        name: visible ? root.iconName : "info"
        size: Math.round(15 * Theme.scale)
        color: root.ink
    }
    UiText {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: root.iconName !== "" ? 25 + Math.round(15 * Theme.scale) : 16
        y: 8
        width: parent.width - anchors.leftMargin - 16
        role: "caption"
        text: root.text
        color: root.ink
        wrapMode: Text.Wrap
        lineHeight: Math.round(17 * Theme.scale)
    }
}
