// A saved desktop as a picture; large ones let one choose the desktop of each display.
import QtQuick
import Quillo.Core

Item {
    id: root
    property alias source: picture.source
    property alias colorName: picture.colorName
    property alias style: picture.style  // "detail", "review", "card", "restore", "switcher", "strip"
    property alias states: picture.states
    property alias shownDesktops: picture.shownDesktops
    /// Radius of the wall behind it; below 0 there is none, for a map that stands on a wall of its owner.
    property real wallRadius: style === "detail" || style === "review" ? 16 : style === "restore" ? 12 : -1
    signal desktopPicked(string display, int position)

    function showDesktop(display, position) {
        const shown = Object.assign({}, shownDesktops)
        shown[display] = position
        shownDesktops = shown
        desktopPicked(display, position)
    }

    Accessible.role: Accessible.Graphic
    Accessible.name: picture.description

    Rectangle {
        anchors.fill: parent
        visible: root.wallRadius >= 0
        radius: Math.max(0, root.wallRadius)
        color: picture.wall
    }
    DesktopMapPicture {
        id: picture
        anchors.fill: parent
        theme: Theme
    }
    Repeater {
        model: picture.captions.length
        Item {
            id: caption
            // Displays stand where they stand, also where people read from right to left.
            LayoutMirroring.enabled: false
            LayoutMirroring.childrenInherit: true
            required property int index
            readonly property var what: picture.captions[index] ?? { labels: [], positions: [], empty: [], current: -1 }
            // As text, so that the segments stay, and keep the focus, while another desktop is shown.
            readonly property string labels: what.labels.join("\n")

            x: what.x ?? 0
            y: what.y ?? 0
            width: what.width ?? 0
            height: what.height ?? 0

            UiText {
                anchors.centerIn: parent
                width: Math.min(implicitWidth, parent.width)
                visible: caption.what.labels.length === 1
                role: "map-desktop"
                color: Theme.text2
                text: caption.labels
            }
            Segmented {
                anchors.centerIn: parent
                visible: caption.what.labels.length > 1
                mini: true
                label: "Desktop that the map shows"
                model: caption.labels.split("\n")
                faint: caption.what.empty
                current: caption.what.current
                onPicked: index => root.showDesktop(caption.what.display, caption.what.positions[index])
            }
        }
    }
}
