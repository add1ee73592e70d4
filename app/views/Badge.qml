// A workspace's own icon on its colour.
import QtQuick
import Quillo.Core

Rectangle {
    property string icon
    property string colorName
    property real size: 32
    readonly property var colors: Theme.workspaces[colorName] || Theme.workspaces["slate"]

    width: size
    height: size
    radius: size * 0.28
    color: colors.base

    Icon {
        anchors.centerIn: parent
        name: Theme.workspaceSymbol(parent.icon)
        size: Math.round(parent.size * 0.5)
        color: parent.colors.on
    }
}
