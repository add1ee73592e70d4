// What an icon-only control does, half a second after the pointer has come to rest on it.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.ToolTip {
    id: tip
    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + 6 : 0
    delay: 500
    timeout: 6000
    margins: 6
    padding: 6
    leftPadding: 10
    rightPadding: 10
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

    contentItem: UiText {
        role: "caption"
        text: tip.text
        color: "white"
    }
    background: Rectangle {
        radius: 7
        color: Theme.tooltip
    }
}
