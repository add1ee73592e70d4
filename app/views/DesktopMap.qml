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
    property alias pickedKeys: picture.pickedKeys  // strongly outlined
    /// Radius of the wall behind it; below 0 there is none, for a map that stands on a wall of its owner.
    property real wallRadius: style === "detail" || style === "review" ? 16 : style === "restore" ? 12 : -1
    signal desktopPicked(string display, int position)
    /// Windows can be pointed at and picked, by mouse and with the arrow keys.
    property bool pickable: false
    property var pointedKeys: []  // by something else, as long as the pointer is on no window here
    readonly property var outlinedKeys: pointer.key !== "" ? [pointer.key] : pointedKeys  // lightly
    property var order: []        // of the keys, for the arrow keys
    signal pointed(string key)    // empty: none any more
    signal picked(string key)

    function step(by) {
        if (order.length === 0) return
        const at = order.indexOf(pickedKeys[0] ?? "")
        picked(order[Math.max(0, Math.min(order.length - 1, at < 0 ? 0 : at + by))])
    }
    /// The desktop on which the window stands is shown.
    function show(key) {
        const hidden = picture.hiddenDesktop(key)
        if (hidden.display !== undefined) showDesktop(hidden.display, hidden.position)
    }
    activeFocusOnTab: pickable
    property bool byKey: false  // the keyboard was used last
    onActiveFocusChanged: byKey = activeFocus
    Keys.onPressed: (event) => {
        if (!pickable) return
        const back = event.key === Qt.Key_Up || event.key === (LayoutMirroring.enabled ? Qt.Key_Right : Qt.Key_Left)
        const on = event.key === Qt.Key_Down || event.key === (LayoutMirroring.enabled ? Qt.Key_Left : Qt.Key_Right)
        if (!back && !on) return
        byKey = true
        step(back ? -1 : 1)
        event.accepted = true
    }

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
        pointedKeys: root.outlinedKeys
    }
    FocusRing {
        shown: root.byKey
        radius: Math.max(0, root.wallRadius) + 4
    }
    MouseArea {
        anchors.fill: parent
        enabled: root.pickable
        hoverEnabled: true
        id: pointer
        property string key
        cursorShape: key !== "" ? Qt.PointingHandCursor : Qt.ArrowCursor
        function follow(key) {
            if (key === pointer.key) return
            pointer.key = key
            root.pointed(key)
        }
        onEntered: follow(picture.keyAt(mouseX, mouseY))  // the first position is not a change of it
        onPositionChanged: (event) => follow(picture.keyAt(event.x, event.y))
        onExited: follow("")
        onClicked: (event) => {
            root.forceActiveFocus(Qt.MouseFocusReason)
            root.byKey = false
            const key = picture.keyAt(event.x, event.y)
            if (key !== "") root.picked(key)
        }
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
