// One workspace: its desktop, what is in it, and what can be done with it. The map and the list below it point
// at each other; what the list unticks is left out of the workspace.
import QtQuick
import Quillo.Core

FocusScope {
    id: root
    readonly property bool narrow: width < 900
    readonly property bool toastInBar: true
    readonly property real side: Math.round(Math.min(328 * Theme.scale, width * 0.4))

    Shortcut { sequences: [StandardKey.Undo]; enabled: Detail.undoWords !== ""; onActivated: Detail.undo() }
    Shortcut { sequences: [StandardKey.Redo]; enabled: Detail.redoWords !== ""; onActivated: Detail.redo() }

    /// Back from there, the keyboard is where it was.
    function afterPreview() { preview.forceActiveFocus(Qt.PopupFocusReason) }  // and into view
    /// A window is picked in the map: its line is shown and chosen.
    function pick(key) {
        const row = Detail.reveal(key)
        if (row < 0) return
        list.choose(row, true)
    }
    // The windows that the chosen line stands for; the map shows the desktop of the only one.
    readonly property var pickedKeys: list.chosen && list.count > 0 ? Detail.windowKeys(list.currentIndex) : []
    onPickedKeysChanged: if (pickedKeys.length === 1) map.show(pickedKeys[0])

    Item {
        id: bar
        x: 24
        width: parent.width - 48
        height: Math.max(60, done.height + 26)
        PushButton {
            anchors.left: parent.left
            anchors.leftMargin: -12
            anchors.verticalCenter: parent.verticalCenter
            kind: "plain"
            iconName: root.LayoutMirroring.enabled ? "arrow-right" : "arrow-left"
            text: "Back to workspaces · esc"
            onClicked: Ui.back()
        }
        Row {
            anchors.right: done.left
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4
            visible: Detail.undoWords !== "" || Detail.redoWords !== ""
            IconButton {
                iconName: "undo-2"
                enabled: Detail.undoWords !== ""
                tip: (Detail.undoWords !== "" ? "Undo: " + Detail.undoWords : "Nothing to undo") + Ui.text(" · ⌘Z")
                onClicked: Detail.undo()
            }
            IconButton {
                iconName: "redo-2"
                enabled: Detail.redoWords !== ""
                tip: (Detail.redoWords !== "" ? "Redo: " + Detail.redoWords : "Nothing to redo") + Ui.text(" · ⇧⌘Z")
                onClicked: Detail.redo()
            }
        }
        PushButton {
            id: done
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: "Done"
            onClicked: Ui.back()
        }
    }

    // In a wide window the map stays above the list; in a narrow one all is one page.
    Scroller {
        id: page
        anchors.top: bar.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: root.narrow
        Item { id: pageAbove; width: page.width; height: root.narrow ? above.height : 0 }
        Item { id: pageList; width: page.width; height: root.narrow ? card.height : 0 }
        Item { id: pageRest; width: page.width; height: root.narrow ? rest.height + 48 : 0 }
    }
    Item {
        id: wideAbove
        anchors.top: bar.bottom
        anchors.left: parent.left
        width: root.width - root.side - 32
        height: above.height
        visible: !root.narrow
    }
    Rectangle {
        id: card
        parent: root.narrow ? pageList : root
        anchors.left: parent.left
        anchors.leftMargin: 24
        y: root.narrow ? 0 : wideAbove.y + wideAbove.height
        width: root.narrow ? root.width - 48 : wideAbove.width - 48
        height: root.narrow ? list.contentHeight + 2 : Math.min(root.height - y - 24, list.contentHeight + 2)
        radius: 14
        color: Theme.surface
        border.width: 1
        border.color: Theme.border
        ReviewList {
            id: list
            anchors.fill: parent
            anchors.margins: 1
            contents: Detail
            selects: true
            Accessible.name: "In this workspace"
            onChosenByKey: if (root.narrow && currentItem) page.show(currentItem)
        }
    }
    Column {
        id: above
        parent: root.narrow ? pageAbove : wideAbove
        x: 24
        width: parent ? parent.width - 48 : 0

        Rectangle {
            readonly property var colors: Theme.workspaces[Detail.colorName] || Theme.workspaces["slate"]
            width: parent.width
            height: root.narrow ? Math.max(220, Math.min(380, width * 0.48))
                                : Math.max(180, Math.min(Math.max(380, root.height * 0.5), width * 0.48, root.height - 330))
            radius: 16
            color: colors.tint
            DesktopMap {
                id: map
                anchors.fill: parent
                style: "detail"
                colorName: Detail.colorName
                source: Detail.map
                states: Detail.states
                pickable: true
                order: Detail.map ? Detail.allWindowKeys() : []
                pickedKeys: root.pickedKeys
                pointedKeys: list.hoveredRow >= 0 ? Detail.windowKeys(list.hoveredRow) : []
                onPointed: (key) => list.pointedRow = key !== "" ? Detail.rowOf(key) : -1
                onPicked: (key) => root.pick(key)
            }
        }
        Item { width: 1; height: root.narrow ? 24 : 0 }
        Item {
            id: headPlace
            width: parent.width
            height: root.narrow ? head.height : 0
        }
        Item { width: 1; height: 24 }
        Flow {
            width: parent.width
            spacing: 10
            bottomPadding: 10
            Item {
                width: Math.max(title.implicitWidth + 24, parent.width - adding.width - 10)
                height: adding.height
                Row {
                    x: 8
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 10
                    UiText { id: title; role: "body-strong"; text: "In this workspace" }
                    UiText {
                        visible: text !== ""
                        anchors.baseline: title.baseline
                        role: "caption"
                        color: Theme.text2
                        text: Detail.leftOutText
                    }
                }
            }
            Row {
                id: adding
                spacing: 8
                PushButton {
                    compact: true
                    iconName: "plus"
                    text: "Add App…"
                    onClicked: appSheet.open()
                }
                Item {
                    width: addAddress.width
                    height: addAddress.height
                    PushButton {
                        id: addAddress
                        compact: true
                        iconName: "link"
                        text: "Add Address…"
                        enabled: Detail.addressRefusal === ""
                        Accessible.description: Detail.addressRefusal
                        onClicked: addressSheet.open()
                    }
                    HoverHandler { id: refused }  // what is disabled is not hovered itself
                    ToolTip {
                        visible: refused.hovered && Detail.addressRefusal !== ""
                        text: Detail.addressRefusal
                    }
                }
            }
        }
    }
    Scroller {
        id: right
        anchors.right: parent.right
        anchors.rightMargin: 24 - sides
        anchors.top: bar.bottom
        anchors.topMargin: -padding
        anchors.bottom: parent.bottom
        width: root.side + 2 * sides
        visible: !root.narrow
        padding: 12  // for the rings around what is at the edge
        sides: 20
        Item { id: rightHead; width: parent.width; height: root.narrow ? 0 : head.height + 26 }
        Item { id: rightRest; width: parent.width; height: root.narrow ? 0 : rest.height + 12 }
    }

    Column {
        id: head
        parent: root.narrow ? headPlace : rightHead
        width: parent.width
        Row {
            width: parent.width
            spacing: 14
            LookButton {
                symbol: Detail.icon
                colorName: Detail.colorName
                onIconPicked: (value) => Detail.setIcon(value)
                onColorPicked: (value) => Detail.setColor(value)
            }
            Column {
                width: parent.width - 56 - 14
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2
                EditableName {
                    width: parent.width
                    name: Detail.name
                    onRenamed: (name) => Detail.rename(name)
                }
                UiText { role: "caption"; width: parent.width; text: Detail.saved; color: Theme.text2 }
                UiText {
                    role: "caption"
                    width: parent.width
                    visible: text !== ""
                    text: Detail.edited
                    color: Theme.text2
                }
                UiText {
                    role: "caption"
                    width: parent.width
                    visible: text !== ""
                    text: Detail.lastResumed
                    color: Theme.text2
                }
            }
        }
        Item { width: 1; height: 20 }
        Rectangle {
            width: parent.width
            height: Math.round(66 * Theme.scale)
            radius: 12
            color: Theme.surface
            border.width: 1
            border.color: Theme.border
            Row {
                anchors.fill: parent
                Repeater {
                    model: Detail.counts
                    Column {
                        required property var modelData
                        width: parent.width / Detail.counts.length
                        anchors.verticalCenter: parent.verticalCenter
                        Accessible.role: Accessible.StaticText
                        Accessible.name: modelData.count + " " + modelData.noun
                        UiText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            role: "title"
                            text: modelData.count
                            Accessible.ignored: true
                        }
                        UiText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            role: "caption"
                            color: Theme.text2
                            text: modelData.noun
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
        Item { width: 1; height: 16 }
        PushButton {
            width: parent.width
            large: true
            kind: "primary"
            iconName: "rotate-ccw"
            text: "Resume workspace"
            focus: true
            enabled: Detail.canResume
            onClicked: Detail.resume()
        }
        Item { width: 1; height: 8 }
        PushButton {
            id: preview
            width: parent.width
            large: true
            iconName: "list-checks"
            text: "Preview…"
            tip: "What resuming would do, before it does"
            enabled: Detail.canResume
            onClicked: Detail.preview()
        }
    }
    Column {
        id: rest
        parent: root.narrow ? pageRest : rightRest
        x: root.narrow ? 24 : 0
        y: root.narrow ? 24 : 0
        width: parent ? parent.width - 2 * x : 0
        UiText { width: parent.width; role: "body-strong"; text: "When resuming"; bottomPadding: 6 }
        Repeater {
            model: Detail.cleanSlateLabels
            RadioRow {
                required property string modelData
                required property int index
                text: modelData
                checked: Detail.cleanSlate === index
                onPicked: Detail.setCleanSlate(index)
            }
        }
        UiText {
            anchors.left: parent.left
            anchors.leftMargin: 10 + Math.round(16 * Theme.scale)
            width: parent.width - anchors.leftMargin
            bottomPadding: 4
            role: "caption"
            color: Theme.text2
            visible: Detail.cleanSlate === 2
            wrapMode: Text.Wrap
            text: Ui.text("Quit asks other regular apps to close normally. Apps with unsaved changes may stay open. Finder and Quillo stay open.")
        }
        Item { width: 1; height: 14 }
        Rectangle { width: parent.width; height: 1; color: Theme.border }
        Item { width: 1; height: 10 }
        ActionRow {
            iconName: "refresh-cw"
            text: "Update from Current Desktop"
            enabled: Detail.canResume
            onClicked: Library.update(Detail.workspaceId)
        }
        ActionRow {
            visible: Detail.hasReport
            iconName: "history"
            text: "Show Last Report"
            enabled: Detail.canResume
            onClicked: Detail.showReport()
        }
        ActionRow {
            iconName: "keyboard"
            text: "Shortcut and Automation…"
            onClicked: automationSheet.open()
        }
        ActionRow {
            iconName: "upload"
            text: "Export Workspace…"
            onClicked: Library.exportWorkspace(Detail.workspaceId)
        }
        ActionRow {
            iconName: "copy"
            text: "Duplicate Workspace"
            onClicked: Library.duplicate(Detail.workspaceId)
        }
        ActionRow {
            iconName: "trash-2"
            text: "Delete Workspace"
            danger: true
            onClicked: confirmation.open()
        }
        Item { width: 1; height: 10 }
        Rectangle { width: parent.width; height: 1; color: Theme.border }
        Item { width: 1; height: 12 }
        LayoutsSection { width: parent.width }
    }

    AddAppSheet { id: appSheet }
    AddAddressSheet { id: addressSheet }
    AutomationSheet { id: automationSheet }
    DeleteDialog {
        id: confirmation
        name: Detail.name
        onConfirmed: Library.remove(Detail.workspaceId)
    }
}
