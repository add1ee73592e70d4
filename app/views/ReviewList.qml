// What would be saved, as a tree. Up and Down choose a line, Space ticks it, Left and Right close and open it.
import QtQuick
import Quillo.Core

ListView {
    id: list
    property bool byKey: false  // the keyboard was used last

    model: Review.rows
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    cacheBuffer: 2000
    activeFocusOnTab: true
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.Tree
    Accessible.name: "What is saved"

    function choose(index) {
        byKey = true
        if (count === 0) return
        currentIndex = Math.min(count - 1, Math.max(0, index))
        positionViewAtIndex(currentIndex, ListView.Contain)
    }
    onActiveFocusChanged: if (!activeFocus) byKey = false
    Keys.onUpPressed: choose(currentIndex - 1)
    Keys.onDownPressed: choose(currentIndex + 1)
    Keys.onSpacePressed: { byKey = true; Review.toggle(currentIndex) }
    Keys.onReturnPressed: (event) => { if (event.modifiers === Qt.NoModifier) { byKey = true; Review.toggle(currentIndex) } else event.accepted = false }
    Keys.onRightPressed: { byKey = true; Review.setOpen(currentIndex, !LayoutMirroring.enabled) }
    Keys.onLeftPressed: { byKey = true; Review.setOpen(currentIndex, LayoutMirroring.enabled) }
    Keys.onPressed: (event) => {
        if (event.key === Qt.Key_Home) choose(0)
        else if (event.key === Qt.Key_End) choose(count - 1)
        else if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
            choose(currentIndex + (event.key === Qt.Key_PageUp ? -10 : 10))
        else return
        event.accepted = true
    }
    Keys.onTabPressed: (event) => { byKey = false; event.accepted = false }

    delegate: ReviewRow {
        onToggled: Review.toggle(index)
        onOpenAsked: (open) => Review.setOpen(index, open)
    }
    ScrollBar { flickable: list }
}
