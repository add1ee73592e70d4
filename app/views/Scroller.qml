// A page that scrolls when it is taller than its place, and brings what has the keyboard into view.
import QtQuick
import Quillo.Core

Flickable {
    id: root
    default property alias content: holder.data
    property alias contentSpacing: holder.spacing
    property real padding: 0

    contentWidth: width
    contentHeight: holder.implicitHeight + 2 * padding
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    interactive: contentHeight > height

    Column {
        id: holder
        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
    }

    readonly property Item focusItem: Window.activeFocusItem
    onFocusItemChanged: {
        let item = focusItem
        while (item && item !== holder) item = item.parent
        if (!item || !focusItem) return
        const top = focusItem.mapToItem(holder, 0, 0).y + padding
        const bottom = top + focusItem.height
        if (top < contentY) contentY = Math.max(0, top - 12)
        else if (bottom > contentY + height) contentY = Math.min(contentHeight - height, bottom - height + 12)
    }

    ScrollBar {
        flickable: root
    }
}
