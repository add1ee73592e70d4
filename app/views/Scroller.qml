// A page that scrolls when it is taller than its place, and brings what the person gives the keyboard to into view.
import QtQuick
import Quillo.Core

Flickable {
    id: root
    default property alias content: holder.data
    property alias contentSpacing: holder.spacing
    property real padding: 0
    property real sides: padding  // where the rings around what is at the edge must not reach below the scroll bar

    contentWidth: width
    contentHeight: holder.implicitHeight + 2 * padding
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    interactive: contentHeight > height

    Column {
        id: holder
        x: root.sides
        y: root.padding
        width: root.width - 2 * root.sides
    }

    readonly property Item focusItem: Window.activeFocusItem
    onFocusItemChanged: Qt.callLater(() => { if (root && !root.gone) follow() })  // by then it says whether it was the keyboard
    property bool gone: false  // what is asked for later may come when all that it names has ended
    Component.onDestruction: gone = true
    // With the keyboard one comes to what a control belongs to as well: its words are around it.
    function follow() {
        let item = focusItem
        while (item && item !== holder) item = item.parent
        // What has the keyboard from the beginning, or because its window has, may lie below: a page begins at its top.
        const byItself = [Qt.OtherFocusReason, Qt.ActiveWindowFocusReason]
        if (!item || byItself.includes(focusItem.focusReason)) return
        show(focusItem, focusItem.visualFocus ? Math.round(44 * Theme.scale) : 0)
    }
    function show(item, around = 0) {
        const top = item.mapToItem(holder, 0, 0).y + padding
        const bottom = top + item.height
        if (top - around < contentY) scrollTo(top - Math.max(around, 12))
        else if (bottom + around > contentY + height) scrollTo(bottom + Math.max(around, 12) - height)
    }
    function scrollTo(y) { contentY = Math.max(0, Math.min(contentHeight - height, y)) }
    Keys.onPressed: (event) => {  // to what has nothing to press
        const way = { [Qt.Key_PageDown]: height - 40, [Qt.Key_PageUp]: 40 - height,
                      [Qt.Key_Home]: -contentHeight, [Qt.Key_End]: contentHeight }[event.key]
        if (way === undefined || !interactive) return
        scrollTo(contentY + way)
        event.accepted = true
    }

    ScrollBar {
        flickable: root
    }
}
