// What an icon-only control does, half a second after the pointer has come to rest on it. Made only once it is
// to be `visible`: nearly every control has one.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Loader {
    id: root
    property string text

    anchors.fill: parent
    active: visible
    sourceComponent: T.ToolTip {
        id: tip
        parent: root
        visible: true
        text: root.text
        x: Math.round((root.width - implicitWidth) / 2)
        y: root.height + 6
        delay: 500
        timeout: 6000
        margins: 6
        padding: 6
        leftPadding: 10
        rightPadding: 10
        implicitWidth: Math.min(contentItem.implicitWidth + leftPadding + rightPadding, root.Window.width - 2 * margins)
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

        contentItem: UiText {
            role: "caption"
            text: tip.text
            color: "white"
            wrapMode: Text.Wrap
        }
        background: Rectangle {
            radius: 7
            color: Theme.tooltip
        }
    }
}
