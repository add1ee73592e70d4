// The saved workspaces: search, order, cards, and the current desktop below them.
import QtQuick
import Quillo.Core

FocusScope {
    id: root
    // Changes when it does, not with all that the library tells: what follows it takes the keyboard each time.
    readonly property bool empty: Library.empty
    readonly property real stripHeight: strip.height
    // What is typed has matches, and the first of them is marked although the keyboard is in the field.
    readonly property bool searching: search.activeFocus && Library.query !== "" && grid.count > 0
    onSearchingChanged: if (searching) grid.showCurrent()
    readonly property int columns: Math.max(1, Math.floor((width - 48 + 18) / (318 + 80 * (Theme.scale - 1))))  // names want room

    readonly property int chosen: Library.selected.length
    Keys.onEscapePressed: (event) => {
        if (Library.selecting) endSelecting()
        else event.accepted = false
    }

    function endSelecting() {
        Library.endSelecting()
        Presses.pageCame()
        if (grid.count > 0) grid.forceActiveFocus(Qt.OtherFocusReason)
    }
    function focusSearch() {
        Library.endSelecting()
        search.forceActiveFocus(Qt.ShortcutFocusReason)
        search.selectAll()
    }
    Component.onCompleted: Library.refreshCurrentSnapshot()
    // Current for as long as somebody looks.
    readonly property bool looked: visible && Window.active
    onLookedChanged: Library.followCurrentDesktop(looked)
    Component.onDestruction: {
        Library.followCurrentDesktop(false)
        Library.endSelecting()
    }

    Item {
        id: bar
        x: 24
        width: parent.width - 48
        height: Math.max(60, search.height + 26)

        Field {
            id: search
            visible: !Library.empty && !Library.selecting
            clearable: true
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(320 * Theme.scale, bar.width - order.width - tools.width - 24)
            iconName: "search"
            prompt: "Search workspaces and apps"
            text: Library.query
            focus: !root.empty
            onEdited: (text) => { Library.query = text; grid.showTop() }
            Keys.onDownPressed: {
                const marked = root.searching
                grid.enter(0)
                if (marked) grid.down()
            }
            Keys.onPressed: (event) => {
                if (event.key === Qt.Key_PageDown) grid.enter(grid.page)
                else if (event.key === Qt.Key_PageUp) grid.enter(-grid.page)
                else return
                event.accepted = true
            }
            Keys.onEscapePressed: (event) => {
                if (Library.query !== "") Library.query = ""
                else event.accepted = false
            }
            Keys.onReturnPressed: if (root.searching) Ui.openDetail(Library.idAt(Library.cursor))
            Keys.onEnterPressed: if (root.searching) Ui.openDetail(Library.idAt(Library.cursor))
        }
        PopUpButton {
            id: order
            visible: !Library.empty && !Library.selecting
            anchors.left: search.right
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            label: "Order"
            model: Library.orders
            current: Library.order
            onPicked: (index) => Library.order = index
        }
        Row {
            id: choosing
            visible: Library.selecting
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            spacing: 12
            UiText {
                anchors.verticalCenter: parent.verticalCenter
                role: "body-strong"
                text: root.chosen === 0 ? "Select workspaces" : root.chosen + " selected"
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            PushButton {
                text: Library.allSelected ? "Select None" : "Select All"
                onClicked: Library.selectAll()
            }
        }
        Row {
            visible: Library.selecting
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10
            PushButton {
                iconName: "upload"
                text: "Export…"
                enabled: root.chosen > 0
                Accessible.name: "Export selected workspaces…"
                onClicked: Library.exportSelected()
            }
            PushButton {
                iconName: "trash-2"
                kind: "danger"
                text: "Delete…"
                enabled: root.chosen > 0
                Accessible.name: "Delete selected workspaces…"
                onClicked: removal.open()
            }
            PushButton {
                text: "Done"
                onClicked: root.endSelecting()
            }
        }
        Row {
            id: tools
            visible: !Library.selecting
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10
            IconButton {
                visible: !Library.empty
                size: Math.round(34 * Theme.scale)
                iconSize: Math.round(18 * Theme.scale)
                iconName: "download"
                tip: Ui.text("Import Workspace… · ⌘I")
                onClicked: Library.importWorkspace()
            }
            IconButton {
                visible: !Library.empty
                size: Math.round(34 * Theme.scale)
                iconSize: Math.round(18 * Theme.scale)
                iconName: "list-checks"
                tip: "Select several to export or delete"
                onClicked: {
                    Library.beginSelecting()
                    Presses.pageCame()  // other buttons stand here now
                    grid.forceActiveFocus(Qt.TabFocusReason)
                }
            }
            IconButton {
                size: Math.round(34 * Theme.scale)
                iconSize: Math.round(18 * Theme.scale)
                iconName: "gallery-vertical-end"
                tip: "Open workspace switcher"
                onClicked: Ui.toggleSwitcher()
            }
            IconButton {
                size: Math.round(34 * Theme.scale)
                iconSize: Math.round(18 * Theme.scale)
                iconName: "settings"
                tip: Ui.text("Settings · ⌘,")
                onClicked: Ui.openSettings()
            }
        }
    }

    StorageBanner {
        id: banner
        anchors.top: bar.bottom
        x: 24
        width: parent.width - 48
        lines: Library.issues
        showsFiles: true
        onFilesAsked: Library.showFiles()
        onDismissed: Library.dismissIssues()
    }
    AccessBanner {
        id: access
        anchors.top: banner.bottom
        anchors.topMargin: visible && banner.visible ? 8 : 0
        x: 24
        width: parent.width - 48
    }

    GridView {
        id: grid
        anchors.top: access.bottom
        anchors.topMargin: access.visible || banner.visible ? 13 : 0
        anchors.bottom: strip.top
        x: 24 - 9
        width: parent.width - 48 + 18
        topMargin: 3
        bottomMargin: 16
        cellWidth: Math.floor(width / root.columns * 4096) / 4096  // not rounded: the last card ends with the page
        cellHeight: Math.round(118 + 60 * Theme.scale) + 16
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        cacheBuffer: 200
        model: Library
        currentIndex: Library.cursor
        // Following by itself, a view makes every card on the way to the current one.
        highlightFollowsCurrentItem: false
        onCurrentIndexChanged: if (activeFocus) showCurrent()
        onActiveFocusChanged: if (activeFocus) showCurrent()
        function showCurrent() {
            if (currentIndex < root.columns) showTop()
            else positionViewAtIndex(currentIndex, GridView.Contain)
        }
        function showTop() {
            positionViewAtBeginning()
            contentY = originY - topMargin
        }
        // By the keys from the search field on.
        function enter(steps) {
            if (count === 0) return
            forceActiveFocus(Qt.TabFocusReason)
            Library.moveCursor(steps)
        }
        function down() {
            if (Math.floor(Library.cursor / root.columns) < Math.floor((count - 1) / root.columns))
                Library.moveCursor(root.columns)
        }
        readonly property int page: Math.max(1, Math.floor(height / cellHeight)) * root.columns
        activeFocusOnTab: true
        visible: count > 0
        Accessible.role: Accessible.List
        Accessible.name: "Workspaces"

        Keys.onLeftPressed: Library.moveCursor(LayoutMirroring.enabled ? 1 : -1)
        Keys.onRightPressed: Library.moveCursor(LayoutMirroring.enabled ? -1 : 1)
        Keys.onUpPressed: if (Library.cursor < root.columns) root.focusSearch()
                          else Library.moveCursor(-root.columns)
        Keys.onDownPressed: down()
        function choose(otherwise) {
            if (Library.selecting) Library.toggleSelected(Library.idAt(Library.cursor))
            else otherwise(Library.idAt(Library.cursor))
        }
        function askToDelete() {
            if (Library.selecting) { if (root.chosen > 0) removal.open() }
            else if (currentItem) currentItem.askToDelete()
        }
        Keys.onReturnPressed: choose((id) => Library.resume(id))
        Keys.onEnterPressed: choose((id) => Library.resume(id))
        Keys.onSpacePressed: choose((id) => Ui.openDetail(id))
        Keys.onDeletePressed: askToDelete()
        // Backspace is what a Mac's keyboard calls "delete".
        Keys.onPressed: (event) => {
            if (event.matches(StandardKey.SelectAll)) Library.selectAll()
            else if (event.key === Qt.Key_Home) Library.setCursor(0)
            else if (event.key === Qt.Key_End) Library.setCursor(count - 1)
            else if (event.key === Qt.Key_PageUp) Library.moveCursor(-page)
            else if (event.key === Qt.Key_PageDown) Library.moveCursor(page)
            else if (event.key === Qt.Key_Backspace && !Ui.onLinux) askToDelete()
            else return
            event.accepted = true
        }
        Keys.onMenuPressed: if (currentItem) currentItem.openMenu()

        delegate: WorkspaceCard {
            required property string key
            workspaceId: key
            width: grid.cellWidth
            height: grid.cellHeight
            current: GridView.isCurrentItem && (grid.activeFocus || root.searching)
            selecting: Library.selecting
            selected: selecting && Library.selected.indexOf(key) >= 0
        }
    }
    ScrollBar {
        parent: root
        flickable: grid
        anchors.top: grid.top
        visible: needed && grid.visible
    }

    Column {
        id: nothing
        readonly property real words: emptyTitle.height + emptyHint.height + 22
                                      + (Library.empty ? emptyButtons.height + 36 + emptyShortcut.height : 0)
        anchors.centerIn: grid
        width: Math.min(440 * Theme.scale, parent.width - 48)
        visible: grid.count === 0
        spacing: 8
        // The desktop that would be the first workspace, where there is room for it.
        DesktopMap {
            id: picture
            readonly property bool shown: Library.empty && Library.currentMap && Library.accessibilityGranted && height >= 96
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(560, root.width - 48)
            height: Math.min(216, grid.height - nothing.words - 48)
            visible: shown
            style: "restore"
            wallRadius: -1
            colorName: "slate"
            source: Library.currentMap
        }
        Rectangle {
            visible: !picture.shown && grid.height - nothing.words >= 104
            anchors.horizontalCenter: parent.horizontalCenter
            width: 72
            height: 72
            radius: 20
            color: Theme.accentTint
            Icon {
                anchors.centerIn: parent
                name: Library.empty ? "layers" : "search"
                size: 32
                color: Theme.accentText
            }
        }
        Item { width: 1; height: 6 }
        UiText {
            id: emptyTitle
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            role: "title"
            text: Library.emptyTitle
            wrapMode: Text.Wrap
        }
        UiText {
            id: emptyHint
            role: Library.empty ? "lead" : "body"
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: Ui.text(Library.emptyHint)
            color: Theme.text2
            wrapMode: Text.Wrap
        }
        Item { width: 1; height: 8; visible: Library.empty }
        Column {
            id: emptyActions
            anchors.horizontalCenter: parent.horizontalCenter
            visible: Library.empty
            spacing: 12
            Row {
                id: emptyButtons
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 10
                PushButton {
                    large: true
                    text: "Import Workspace…"
                    onClicked: Library.importWorkspace()
                }
                PushButton {
                    large: true
                    kind: "primary"
                    iconName: "plus"
                    text: "Save Current Desktop…"
                    focus: root.empty
                    enabled: Library.canSave && Library.accessibilityGranted
                    tip: saving.tip
                    onClicked: Library.save()
                }
            }
            UiText {
                id: emptyShortcut
                anchors.horizontalCenter: parent.horizontalCenter
                visible: Ui.saveShortcut !== "" && grid.height >= nothing.words + 24
                role: "caption"
                text: hint.text
                color: Theme.text2
            }
        }
    }

    Dialog {
        id: removal
        title: root.chosen === 1 ? "Delete the selected workspace?" : "Delete " + root.chosen + " workspaces?"
        text: (root.chosen === 1 ? "This removes the saved workspace." : "This removes the saved workspaces.")
              + " Your apps and files are not affected."
        actionText: root.chosen === 1 ? "Delete Workspace" : "Delete Workspaces"
        danger: true
        onConfirmed: Library.removeSelected()
    }

    Rectangle {
        id: strip
        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? Math.max(76, words.height + 24) : 0
        visible: !Library.empty
        color: Theme.surface
        Rectangle { width: parent.width; height: 1; color: Theme.border }

        DesktopMap {
            id: currentMap
            anchors.left: parent.left
            anchors.leftMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            width: 128
            height: 52
            style: "strip"
            colorName: "slate"
            source: Library.currentMap
        }
        Column {
            id: words
            anchors.left: currentMap.right
            anchors.leftMargin: 14
            anchors.right: actions.left
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            UiText {
                width: parent.width
                role: "body-strong"
                text: "Current desktop"
            }
            UiText {
                id: counts
                width: parent.width
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                role: "caption"
                text: Library.currentText
                color: Theme.text2
            }
        }
        Row {
            id: actions
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            spacing: 14
            UiText {
                id: hint
                // What the desktop holds comes before how its saving is called.
                readonly property real room: strip.width - 48 - currentMap.width - saving.width - 3 * 14 - counts.implicitWidth
                visible: Ui.saveShortcut !== "" && implicitWidth <= room
                anchors.verticalCenter: parent.verticalCenter
                role: "caption"
                text: Ui.text("Save workspace · ⌘S (") + Ui.saveShortcut + ")"
                color: Theme.text2
            }
            PushButton {
                id: saving
                height: Math.round(36 * Theme.scale)
                kind: "primary"
                iconName: "plus"
                text: "Save Current Desktop…"
                enabled: Library.canSave && Library.accessibilityGranted
                tip: Library.accessibilityGranted ? "" : Library.accessReason
                onClicked: Library.save()
            }
        }
    }
}
