// The shadow below an item that fills its parent's place: a picture whose corners keep their size.
import QtQuick
import Quillo.Core

BorderImage {
    property int level: 1
    property real radius: 14
    readonly property int spread: level === 1 ? 4 : level === 2 ? 28 : 72

    z: -1
    anchors.fill: parent
    anchors.margins: -spread
    border.left: spread + radius
    border.right: spread + radius
    border.top: spread + radius
    border.bottom: spread + radius
    source: "image://shadow/" + level + "/" + radius + "/" + (Theme.dark ? "dark" : "light")
}
