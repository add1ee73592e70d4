// What would be saved, as a tree. Up and Down choose a line, Space ticks it, Left and Right close and open it.
import QtQuick
import Quillo.Core

ListView {
    id: list
    property var contents: Review  // whose rows are shown, toggled and opened
    property bool selects: false   // a click chooses a line instead of ticking it, and the chosen one is marked
    property bool chosen: false    // one is
    property bool marked: false    // it is, because it was picked elsewhere
    property int pointedRow: -1    // marked as if the pointer were on it
    property int hoveredRow: -1    // it is on this one
    property bool byKey: false  // the keyboard was used last
    readonly property bool scrolls: contentHeight > height + 1

    model: contents.rows
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    interactive: scrolls
    reuseItems: true
    cacheBuffer: 2000
    activeFocusOnTab: true
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false
    Accessible.role: Accessible.Tree
    Accessible.name: "What is saved"
    signal chosenByKey()

    function choose(index, byOther) {
        byKey = !byOther
        marked = byOther === true
        if (count === 0) return
        currentIndex = Math.min(count - 1, Math.max(0, index))
        chosen = true
        positionViewAtIndex(currentIndex, ListView.Contain)
        if (byKey) chosenByKey()
    }
    onActiveFocusChanged: {
        if (activeFocus) choose(currentIndex)  // it comes by key only: a click leaves the keyboard where it is
        else byKey = false
    }
    Keys.onUpPressed: choose(currentIndex - 1)
    Keys.onDownPressed: choose(currentIndex + 1)
    Keys.onSpacePressed: { byKey = true; contents.toggle(currentIndex) }
    Keys.onReturnPressed: (event) => { if (event.modifiers === Qt.NoModifier) { byKey = true; contents.toggle(currentIndex) } else event.accepted = false }
    Keys.onRightPressed: { byKey = true; contents.setOpen(currentIndex, !LayoutMirroring.enabled) }
    Keys.onLeftPressed: { byKey = true; contents.setOpen(currentIndex, LayoutMirroring.enabled) }
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
        onToggled: list.contents.toggle(index)
        onOpenAsked: (open) => list.contents.setOpen(index, open)
    }
    ScrollBar {
        flickable: list
        y: 6  // clear of the card's corners
        height: list.height - 2 * y
    }
}
