// Says where one is in something long; it can be dragged. For a Flickable or a view made of one.
import QtQuick
import Quillo.Core

Item {
    id: root
    property Flickable flickable
    readonly property bool needed: flickable && flickable.contentHeight > flickable.height + 1

    parent: flickable
    visible: needed
    anchors.right: parent ? parent.right : undefined
    anchors.rightMargin: 3
    width: 8
    height: flickable ? flickable.height : 0
    z: 10

    Rectangle {
        id: thumb
        width: area.containsMouse || area.drag.active ? 8 : 5
        anchors.right: parent.right
        radius: width / 2
        color: Theme.borderStrong
        height: root.needed ? Math.max(28, root.height * root.flickable.visibleArea.heightRatio) : 0
        y: root.needed && !area.drag.active ? Math.round((root.height - height) * position) : y
        readonly property real position:
            root.needed ? Math.min(1, Math.max(0, (root.flickable.contentY - root.flickable.originY)
                                                  / (root.flickable.contentHeight - root.flickable.height))) : 0
        MouseArea {
            id: area
            anchors.fill: parent
            anchors.leftMargin: -4
            hoverEnabled: true
            preventStealing: true
            property real grip: 0
            onPressed: (mouse) => grip = mouse.y
            onPositionChanged: (mouse) => {
                if (!pressed) return
                const room = root.height - thumb.height
                const at = Math.min(room, Math.max(0, thumb.y + mouse.y - grip))
                if (room > 0) root.flickable.contentY = root.flickable.originY
                    + at / room * (root.flickable.contentHeight - root.flickable.height)
            }
        }
    }
}
