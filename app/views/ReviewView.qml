// The capture before it is saved: what it is called, and what of it is left out.
import QtQuick
import Quillo.Core

FocusScope {
    id: root
    readonly property bool wide: width >= 900
    readonly property real side: Math.max(472, Math.min(640, Math.round(width * 0.4)))
    readonly property real stripHeight: footer.height
    readonly property bool busy: Review.capturing || !Review.present
    focus: true

    function cancel() {
        if (Review.capturing) return
        if (Review.touched()) ask(false)
        else Review.cancel()
    }
    function ask(closing) {
        discard.closing = closing
        discard.open()
    }
    Connections {
        target: Review
        function onCloseAsked() { root.ask(true) }
    }
    /// A window is picked in the map: its line is shown and marked.
    function pick(key) {
        const row = Review.reveal(key)
        if (row >= 0) list.choose(row, true)
    }
    function begin() {
        if (busy) return
        list.marked = false
        choices.focusName()
        Qt.callLater(() => { list?.positionViewAtBeginning(); if (page) page.contentY = 0 })  // the map and the name
    }
    function beginLater() { Qt.callLater(() => { if (page && !page.gone) begin() }) }
    Component.onCompleted: beginLater()  // once all stands in its place
    onBusyChanged: begin()
    onWideChanged: beginLater()
    Keys.onEscapePressed: cancel()
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: !root.busy && !discard.visible
        onActivated: Review.save()
    }

    Row {
        id: heading
        anchors.left: parent.left
        anchors.leftMargin: 24
        y: Math.round(20 * Theme.scale)
        spacing: 8
        UiText {
            role: "heading"
            width: Math.min(implicitWidth, root.width - 80)
            text: Review.capturing ? "Reading your open windows…" : "Review what's open, remove anything private, then save."
        }
    }
    StorageBanner {
        id: notes
        x: 24
        y: from
        width: root.width - 48
        lines: Review.notes
        dismissable: false
        readonly property real from: heading.y + heading.height + 20
    }

    Item {
        id: body
        visible: !root.busy
        x: 24
        y: notes.from + (notes.visible ? notes.height + 16 : 0)
        width: root.width - 48
        height: footer.y - y - 8

        Scroller {
            id: left
            anchors.left: parent.left
            anchors.leftMargin: -padding
            y: -padding
            width: root.wide ? root.side + 2 * padding : 0
            height: parent.height + 2 * padding
            visible: root.wide
            padding: 12  // for the rings around what is at the edge
            Item {
                id: leftPlace
                width: parent.width
                height: root.wide ? choices.implicitHeight : 0
            }
        }
        // In a narrow window all is one page, from edge to edge, with room for rings and the scroll bar beside it.
        Scroller {
            id: page
            x: -24
            width: root.width
            height: parent.height
            visible: !root.wide
            Item { id: pageChoices; width: page.width; height: root.wide ? 0 : choices.implicitHeight + 24 }
            Item { id: pageList; width: page.width; height: root.wide ? 0 : card.height + 12 }
        }
        Rectangle {
            id: card
            parent: root.wide ? body : pageList
            anchors.right: parent.right
            anchors.rightMargin: root.wide ? 0 : 24
            width: root.wide ? parent.width - root.side - 24 : parent.width - 48
            height: root.wide ? parent.height : list.contentHeight + 2
            radius: 14
            color: Theme.surface
            border.width: 1
            border.color: Theme.border
            ReviewList {
                id: list
                anchors.fill: parent
                anchors.margins: 1
                onChosenByKey: if (!root.wide && currentItem) page.show(currentItem)
            }
        }
        ReviewChoices {
            id: choices
            parent: root.wide ? leftPlace : pageChoices
            y: root.wide ? 0 : 4
            x: root.wide ? 0 : 24
            width: parent.width - 2 * x
            mapFirst: !root.wide
            pickedKeys: (list.marked || list.activeFocus) && list.count > 0 ? Review.windowKeys(list.currentIndex) : []
            pointedKeys: list.hoveredRow >= 0 ? Review.windowKeys(list.hoveredRow) : []
            onPointed: (key) => list.pointedRow = key !== "" ? Review.rowOf(key) : -1
            onPicked: (key) => root.pick(key)
            mapHeight: root.wide ? Math.max(150, Math.min(Math.round(width * 0.627), body.height - rest))
                                 : Math.max(130, Math.round(Math.min(width * 0.45, 300, body.height - rest - 12)))
        }
    }
    Column {
        anchors.centerIn: parent
        visible: root.busy
        spacing: 14
        Spinner { anchors.horizontalCenter: parent.horizontalCenter; size: 28 }
        UiText { text: "Reading windows…"; color: Theme.text2 }
    }

    Item {
        id: footer
        y: parent.height - height
        width: parent.width
        height: Math.max(60, buttons.height + 26)
        UiText {
            anchors.left: parent.left
            anchors.leftMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - buttons.width - 72
            visible: !root.busy
            text: Review.counts
            color: Theme.text2
            wrapMode: Text.Wrap
            maximumLineCount: 2
        }
        Row {
            id: buttons
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10
            PushButton {
                text: "Cancel"
                enabled: !Review.capturing
                onClicked: root.cancel()
            }
            PushButton {
                text: Review.updating ? "Update Workspace" : "Save Workspace"
                kind: "primary"
                enabled: !root.busy
                onClicked: Review.save()
            }
        }
    }
    Dialog {
        id: discard
        title: "Discard this review?"
        text: "What you typed and left out here is not kept, and nothing is saved."
        actionText: "Discard"
        cancelText: "Keep Reviewing"
        danger: true
        property bool closing: false  // its window, too
        onConfirmed: {
            const window = closing ? root.Window.window : null
            Review.cancel()
            if (window) window.close()
        }
        onClosed: root.begin()
    }
}
