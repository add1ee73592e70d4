// One workspace of the library. A click opens it, its button or Return resumes it.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Item {
    id: root
    required property int index
    required property string workspaceId
    required property string name
    required property string icon
    required property string colorName
    required property string apps
    required property string when
    required property var map
    property bool current: false
    property bool selecting: false
    property bool selected: false
    readonly property bool menuShown: menu.item !== null && menu.item.opened
    readonly property bool active: mouse.containsMouse || current || menuShown
                                  || resume.hovered || more.hovered
    readonly property var colors: Theme.workspaces[colorName] || Theme.workspaces["slate"]

    readonly property bool mirrored: LayoutMirroring.enabled
    function openMenu() { popUpMenu(mirrored ? card.width : 0, 0) }
    /// The menu goes from there the way one reads.
    function popUpMenu(left, top) { menu.active = true; menu.item.popupAt(left, top) }
    function askForName() { renaming.active = true; renaming.item.open() }
    function askToDelete() { confirmation.active = true; confirmation.item.open() }
    // A view of many rows may show another workspace in the same card: what was asked about the one before goes.
    onWorkspaceIdChanged: { menu.active = false; confirmation.active = false; renaming.active = false }

    // What left the library is kept for another row, at times with its place: nothing may read or press it there.
    property bool pooled: false
    GridView.onPooled: pooled = true
    GridView.onReused: pooled = false
    visible: index >= 0 && !pooled
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: apps
    Accessible.focusable: true
    Accessible.focused: current
    Accessible.checkable: selecting
    Accessible.checked: selected
    Accessible.onPressAction: selecting ? Library.toggleSelected(workspaceId) : Ui.openDetail(workspaceId)

    Rectangle {
        id: card
        readonly property real from: Math.round(root.x)
        x: from - root.x + 9
        width: Math.round(root.x + root.width) - from - 18
        height: parent.height - 16
        radius: 14
        color: root.colors.tint
        Shadow { level: 1; radius: 14; opacity: root.active ? 0 : 1 }
        Shadow {
            level: 2
            radius: 14
            opacity: root.active ? 1 : 0
            visible: opacity > 0
            Behavior on opacity { NumberAnimation { duration: Theme.fade(90) } }
        }

        // The footer squares its own upper corners: there are no rounded clips.
        Rectangle {
            id: footer
            anchors.bottom: parent.bottom
            width: parent.width
            height: parent.height - 118
            radius: 14
            color: Theme.surface
            Rectangle { width: parent.width; height: 14; color: Theme.surface }
        }
        DesktopMap {
            x: 1
            y: 1
            width: parent.width - 2
            height: 117
            style: "card"
            colorName: root.colorName
            source: root.map
        }
        Rectangle {
            anchors.fill: parent
            radius: 14
            color: "transparent"
            border.width: 1
            border.color: root.active ? Theme.borderStrong : Theme.border
        }
        Rectangle {
            visible: root.selected
            anchors.fill: parent
            radius: 14
            color: "transparent"
            border.width: 2
            border.color: Theme.accent
        }
        Rectangle {
            visible: root.selecting
            x: 12
            y: 12
            width: 24
            height: 24
            radius: 12
            color: root.selected ? Theme.accent : Theme.raised
            border.width: root.selected ? 0 : 1
            border.color: Theme.text3
            Icon {
                anchors.centerIn: parent
                visible: root.selected
                name: "check"
                size: 15
                color: Theme.onAccent
            }
        }
        FocusRing {
            shown: root.current
            gap: -2
            radius: 14
        }

        MouseArea {
            id: mouse
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            onClicked: (event) => {
                Library.setCursor(root.index)
                if (root.selecting || event.modifiers & Qt.ControlModifier) Library.toggleSelected(root.workspaceId)
                else if (event.button === Qt.RightButton) root.popUpMenu(event.x, event.y)
                else Ui.openDetail(root.workspaceId)
            }
        }

        Item {
            anchors.fill: footer
            Badge {
                id: badge
                anchors.left: parent.left
                anchors.leftMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                icon: root.icon
                colorName: root.colorName
            }
            Column {
                anchors.left: badge.right
                anchors.leftMargin: 11
                anchors.right: buttons.visible ? buttons.left : parent.right
                anchors.rightMargin: buttons.visible ? 10 : 14
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2
                Item {
                    width: parent.width
                    height: Theme.lineHeight("name")  // whatever script the name is in
                    UiText {
                        id: title
                        anchors.left: parent.left
                        anchors.verticalCenter: parent.verticalCenter
                        width: parent.width - (time.visible ? time.implicitWidth + 10 : 0)
                        role: "name"
                        text: root.name
                    }
                    UiText {
                        id: time
                        anchors.right: parent.right
                        anchors.baseline: title.baseline
                        visible: !buttons.visible
                        role: "caption"
                        text: root.when
                        color: Theme.text2
                    }
                }
                UiText {
                    width: parent.width
                    role: "caption"
                    text: root.apps
                    color: Theme.text2
                }
            }
            Row {
                id: buttons
                visible: root.active && !root.selecting
                anchors.right: parent.right
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                spacing: 4
                IconButton {
                    id: more
                    size: 30
                    iconName: "ellipsis"
                    tip: "More actions"
                    focusPolicy: Qt.NoFocus
                    onClicked: root.popUpMenu(buttons.x + more.x + (root.mirrored ? more.width : 0), card.height - 8)
                }
                IconButton {
                    id: resume
                    size: 30
                    filled: true
                    iconName: "rotate-ccw"
                    tip: "Resume workspace"
                    focusPolicy: Qt.NoFocus
                    onClicked: Library.resume(root.workspaceId)
                }
            }
        }
        ToolTip {
            visible: mouse.containsMouse && title.truncated && !root.menuShown
            text: root.name
        }
        // Made when asked for: most cards only pass by.
        Loader {
            id: menu
            active: false
            sourceComponent: MenuPopup {
                property real from: 0
                function popupAt(place, top) { from = place; y = top; open() }
                x: root.mirrored ? from - width : from
                entries: [
                    { text: "Open", iconName: "app-window", act: () => Ui.openDetail(root.workspaceId) },
                    { text: "Resume workspace", iconName: "rotate-ccw", act: () => Library.resume(root.workspaceId) },
                    { text: "Rename…", iconName: "pencil", act: () => root.askForName() },
                    { text: "Update from Current Desktop", iconName: "refresh-cw", act: () => Library.update(root.workspaceId) },
                    { text: "Select", iconName: "list-checks", act: () => Library.toggleSelected(root.workspaceId) },
                    { separator: true },
                    { text: "Export Workspace…", iconName: "upload", act: () => Library.exportWorkspace(root.workspaceId) },
                    { text: "Duplicate Workspace", iconName: "copy", act: () => Library.duplicate(root.workspaceId) },
                    { separator: true },
                    { text: "Delete Workspace", iconName: "trash-2", danger: true, act: () => root.askToDelete() }
                ]
            }
        }
    }
    Loader {
        id: renaming
        active: false
        sourceComponent: RenameDialog {
            parent: renaming.T.Overlay.overlay
            name: root.name
            onRenamed: (name) => Library.rename(root.workspaceId, name)
        }
    }
    Loader {
        id: confirmation
        active: false
        sourceComponent: DeleteDialog {
            parent: confirmation.T.Overlay.overlay
            name: root.name
            onConfirmed: Library.remove(root.workspaceId)
        }
    }
}
