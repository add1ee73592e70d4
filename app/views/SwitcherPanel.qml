// A workspace is found by typing and resumed by Return.
import QtQuick
import Quillo.Core

PanelFrame {
    id: root
    readonly property real rowHeight: Math.round((Theme.scale > 1 ? 62 : 56) * Theme.scale)
    // Eight, or as many as the screen has room for beside field and save row.
    readonly property int mostRows: Math.max(2, Math.min(8, Math.floor((Screen.desktopAvailableHeight - 80) / rowHeight) - 3))

    bodyHeight: column.implicitHeight + 2
    Accessible.name: "Workspace switcher"
    // It is made before it is shown, and kept afterwards.
    onOpenChanged: {
        if (!open) return
        Switcher.shown()
        list.forceLayout()  // the window stands by its height
        column.forceLayout()
        list.positionViewAtBeginning()
        list.contentY = list.originY - list.topMargin
        field.forceActiveFocus()
    }

    Column {
        id: column
        x: 1
        y: 1
        width: parent.width - 2

        Item {
            width: parent.width
            height: root.rowHeight
            Icon {
                id: glass
                anchors.left: parent.left
                anchors.leftMargin: 18
                anchors.verticalCenter: parent.verticalCenter
                name: "search"
                size: Math.round(18 * Theme.scale)
            }
            Field {
                id: field
                anchors.left: glass.right
                anchors.leftMargin: 12
                width: parent.width - 18 - glass.width - 12 - 16
                height: parent.height
                bare: true
                focus: true
                font: Theme.font("query")
                prompt: Switcher.prompt
                text: Switcher.query
                onEdited: (text) => {
                    Switcher.query = text
                    list.contentY = list.originY - list.topMargin
                }
                onActiveFocusChanged: Switcher.focused = activeFocus
                Keys.priority: Keys.BeforeItem
                Keys.onPressed: (event) => { if (Switcher.press(event.key, event.modifiers)) event.accepted = true }
                // The rows are not tab stops: what is highlighted is said here.
                Accessible.description: list.currentItem && list.currentIndex < list.count
                                        ? list.currentItem.name : Switcher.saveTitle
            }
        }
        Rectangle { width: parent.width; height: 1; color: Theme.border }

        ListView {
            id: list
            visible: count > 0
            width: parent.width
            height: Math.min(count, root.mostRows) * root.rowHeight + topMargin + bottomMargin
            topMargin: 8
            bottomMargin: 8
            clip: true
            interactive: count > root.mostRows
            boundsBehavior: Flickable.StopAtBounds
            reuseItems: true
            highlightFollowsCurrentItem: false
            keyNavigationEnabled: false
            currentIndex: Switcher.highlighted
            onCurrentIndexChanged: {
                if (currentIndex >= count) return
                positionViewAtIndex(currentIndex, ListView.Contain)
                const row = itemAtIndex(currentIndex)  // and it does not touch the edge
                if (row) contentY = Math.max(row.y + row.height + bottomMargin - height, Math.min(contentY, row.y - topMargin))
            }
            model: Switcher.rows
            delegate: SwitcherRow {
                required property int index
                required property string name
                required property string apps
                required property string icon
                required property string colorName
                required property var map
                x: 8
                width: list.width - 16
                height: root.rowHeight
                title: name
                detail: apps
                highlighted: index === Switcher.highlighted
                trailingWidth: 96
                onPicked: Switcher.pick(index)
                Badge {
                    anchors.left: parent.left
                    anchors.leftMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    icon: parent.icon
                    colorName: parent.colorName
                }
                DesktopMap {
                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    width: 96
                    height: 40
                    style: "switcher"
                    colorName: parent.colorName
                    source: parent.map
                    Accessible.ignored: true
                }
            }
            ScrollBar { flickable: list }
        }
        UiText {
            visible: Switcher.emptyText !== ""
            width: parent.width
            leftPadding: 24
            rightPadding: 24
            topPadding: 20
            bottomPadding: 20
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideMiddle
            text: Switcher.emptyText
            color: Theme.text2
        }
        Rectangle {
            visible: list.visible || Switcher.emptyText !== ""
            width: parent.width
            height: 1
            color: Theme.border
        }
        Item {
            width: parent.width
            height: save.height + 16
            SwitcherRow {
                id: save
                x: 8
                y: 8
                width: parent.width - 16
                title: Switcher.saveTitle
                detail: Switcher.saveDetail
                highlighted: Switcher.highlighted === list.count
                trailingWidth: caps.width
                onPicked: Switcher.pick(list.count)
                Rectangle {
                    anchors.left: parent.left
                    anchors.leftMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    width: 32
                    height: 32
                    radius: 9
                    color: save.highlighted ? Theme.accent : Theme.sunken
                    Icon {
                        anchors.centerIn: parent
                        name: "plus"
                        size: 17
                        color: save.highlighted ? Theme.onAccent : Theme.text2
                    }
                }
                Rectangle {
                    id: caps
                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    width: key.implicitWidth + 12
                    height: key.implicitHeight + 6
                    radius: 5
                    color: Theme.sunken
                    UiText {
                        id: key
                        anchors.centerIn: parent
                        role: "map-label"
                        text: Ui.text("⌘S")
                        color: Theme.text2
                        Accessible.name: "Shortcut: " + text
                    }
                }
            }
        }
    }
}
