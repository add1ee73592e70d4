// Other applications' windows cannot be read: why, and what to do.
import QtQuick
import Quillo.Core

Rectangle {
    visible: !Library.accessibilityGranted
    height: visible ? Math.max(words.height, button.height) + 24 : 0
    radius: 12
    color: Theme.warningTint

    Icon {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        name: "lock"
        size: Math.round(18 * Theme.scale)
        color: Theme.warning
    }
    UiText {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: 28 + Math.round(18 * Theme.scale)
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - anchors.leftMargin - 16 - (button.visible ? button.width + 16 : 0)
        text: Library.accessReason
        wrapMode: Text.Wrap
    }
    PushButton {
        id: button
        visible: Library.canAllowAccess
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: "Open System Settings"
        onClicked: Library.requestAccessibility()
    }
}
