// A line of what would be saved: an application, a window of it, or a folder or tab.
import QtQuick
import Quillo.Core

Item {
    id: root
    required property int index
    required property string kind
    required property string title
    required property string detail
    required property string identifier
    required property bool included
    required property bool faded
    required property bool openable
    required property bool open
    required property bool last
    required property string reason

    readonly property bool app: kind === "app"
    readonly property bool more: kind === "more"
    readonly property bool location: kind === "folder" || kind === "tab"
    readonly property real line: Math.round((app ? 40 : location ? 28 : 32) * Theme.scale)
    readonly property color ink: more ? Theme.text2 : included && !faded ? location ? Theme.text2 : Theme.text : Theme.text3
    readonly property bool besideBar: ListView.view !== null && ListView.view.scrolls
    readonly property bool current: ListView.isCurrentItem && ListView.view.activeFocus
    readonly property bool chosen: ListView.isCurrentItem && ListView.view.chosen
                                   && (ListView.view.selects || ListView.view.marked)
    readonly property bool pointed: pointer.hovered || (ListView.view !== null && ListView.view.pointedRow === index)
    signal toggled()
    signal openAsked(bool open)

    // What left the list is kept for another line, at times with its place: nothing may read or press it there.
    property bool pooled: false
    ListView.onPooled: pooled = true
    ListView.onReused: pooled = false
    visible: index >= 0 && !pooled
    onFocusChanged: if (focus) focus = false  // the list has the keyboard, whichever line is the current one
    width: ListView.view ? ListView.view.width : 400
    height: line + (last && !app ? 8 : 0)
    Accessible.role: Accessible.TreeItem
    Accessible.name: title
    Accessible.description: [openable ? open ? "Expanded" : "Collapsed" : "", detail, reason].filter((part) => part !== "").join(", ")
    Accessible.checkable: !more
    Accessible.checked: included && !faded
    Accessible.onToggleAction: toggled()
    Accessible.onPressAction: toggled()

    Rectangle {
        visible: root.app && root.index > 0
        width: parent.width
        height: 1
        color: Theme.border
    }
    Rectangle {
        visible: root.chosen
        x: 4
        y: 2
        width: parent.width - 2 * x
        height: root.line - 3
        radius: 8
        color: Theme.accentTint
    }
    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 4
        anchors.rightMargin: root.besideBar ? 12 : 4
        y: 2
        height: root.line - 3
        radius: 8
        color: root.current && root.ListView.view.byKey ? "transparent" : Theme.text
        opacity: root.current && root.ListView.view.byKey ? 1 : root.pointed ? 0.05 : 0
        border.width: root.current && root.ListView.view.byKey ? 2 : 0
        border.color: Theme.focus
    }
    HoverHandler {
        id: pointer
        onHoveredChanged: {  // the next line hears of the pointer before this one hears that it left
            const view = root.ListView.view
            if (view && (hovered || view.hoveredRow === root.index)) view.hoveredRow = hovered ? root.index : -1
        }
    }
    ToolTip {
        visible: pointer.hovered && root.reason !== ""
        text: root.reason
    }
    TapHandler {
        onTapped: {
            const view = root.ListView.view
            view.currentIndex = root.index
            view.chosen = true
            view.marked = false
            if (!view.selects) return root.toggled()
            view.forceActiveFocus(Qt.MouseFocusReason)
            view.byKey = false
        }
    }

    Item {
        width: parent.width
        height: root.line

        Item {
            visible: root.openable
            anchors.left: parent.left
            anchors.leftMargin: root.app ? 0 : 24
            width: 34
            height: parent.height
            Accessible.role: Accessible.Button
            Accessible.name: (root.open ? "Collapse " : "Expand ") + root.title
            Accessible.onPressAction: root.openAsked(!root.open)
            TapHandler {
                gesturePolicy: TapHandler.WithinBounds
                onTapped: root.openAsked(!root.open)
            }
            Icon {
                anchors.centerIn: parent
                name: "chevron-right"
                size: 15
                rotation: root.open ? 90 : root.LayoutMirroring.enabled ? 180 : 0
                Behavior on rotation { NumberAnimation { duration: Theme.reducedMotion ? 0 : 140; easing.type: Easing.OutCubic } }
            }
        }
        AppIcon {
            visible: root.app
            anchors.left: parent.left
            anchors.leftMargin: 34
            anchors.verticalCenter: parent.verticalCenter
            identifier: root.app ? root.identifier : ""
            name: root.title
            size: 24
            opacity: root.included ? 1 : 0.4
        }
        Icon {
            visible: !root.app && !root.more
            anchors.left: parent.left
            anchors.leftMargin: (root.location ? 88.5 : 65) - size / 2
            anchors.verticalCenter: parent.verticalCenter
            name: root.kind === "folder" ? "folder" : root.kind === "tab" ? "link" : "app-window"
            size: Math.round((root.location ? 13 : 14) * Theme.scale)
            color: root.included && !root.faded ? Theme.text2 : Theme.text3
        }
        UiText {
            id: words
            readonly property real start: root.app ? 68 : Math.round((root.location ? 99 : 75) + 7 * Theme.scale)
            readonly property real room: tick.start - start - 16 - (root.app || note.text === "" ? 0 : note.width + 16)
            anchors.left: parent.left
            anchors.leftMargin: start
            width: Math.min(implicitWidth, Math.max(40, room))
            anchors.verticalCenter: parent.verticalCenter
            role: root.app ? root.included ? "body-strong" : "body-medium" : root.location ? "caption" : "body"
            text: root.title
            color: root.ink
            elide: root.location ? Text.ElideMiddle : Text.ElideRight
            Accessible.ignored: true
        }
        UiText {
            id: note
            anchors.left: parent.left
            anchors.leftMargin: root.app ? words.start + words.width + 10 : tick.start - 16 - width
            width: Math.max(0, Math.min(implicitWidth, root.app ? tick.start - 16 - anchors.leftMargin
                                                                : (tick.start - words.start) * 0.6))
            anchors.verticalCenter: parent.verticalCenter
            role: "caption"
            text: root.detail
            color: root.included && !root.faded ? Theme.text2 : Theme.text3
            Accessible.ignored: true
        }
        Toggle {
            id: tick
            readonly property real start: parent.width - width - 18
            anchors.right: parent.right
            anchors.rightMargin: 18
            anchors.verticalCenter: parent.verticalCenter
            visible: !root.more
            small: true
            checked: root.included
            faded: root.faded
            label: "Include " + root.title
            focusPolicy: Qt.NoFocus
            onToggled: { root.ListView.view.currentIndex = root.index; root.toggled() }
        }
    }
}
