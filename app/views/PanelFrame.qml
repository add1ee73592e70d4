// What a floating panel stands in: rounded and over its own shadow where windows may be translucent, else with an
// edge that shows on any ground.
import QtQuick
import Quillo.Core

Item {
    id: root
    default property alias content: body.data
    property real bodyHeight
    // Given by whoever opens the window: its room for the shadow, left and above, right and below.
    property bool translucent: false
    property bool open: false  // from just before it is shown on: it is placed by the height that it has then
    property real roomBefore: 0
    property real roomAfter: 0

    implicitHeight: bodyHeight + roomBefore + roomAfter
    focus: true
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.Dialog

    Rectangle {
        id: body
        x: root.roomBefore
        y: root.roomBefore
        width: root.width - root.roomBefore - root.roomAfter
        height: root.bodyHeight
        radius: root.translucent ? 16 : 0
        color: Theme.raised
        border.width: 1
        border.color: root.translucent ? Theme.panelEdge : Theme.borderStrong
        Shadow { visible: root.translucent; level: 3; radius: 16 }
    }
}
