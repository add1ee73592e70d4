// Adds an application to the workspace: those that are installed or run, found by their names.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Sheet {
    id: sheet
    property var all: []
    readonly property var found: all.filter(app => app.name.toLocaleLowerCase().includes(query.text.trim().toLocaleLowerCase()))

    width: Math.min(440, (parent ? parent.width : 480) - 40)
    padding: 16
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onAboutToShow: {
        all = Detail.addableApps()
        query.clear()
        list.currentIndex = 0
        list.positionViewAtBeginning()
    }
    onOpened: query.forceActiveFocus(Qt.PopupFocusReason)
    function add(index) {
        if (index < 0 || index >= found.length) return
        const key = found[index].key
        close()
        Detail.addApp(key)
    }

    contentItem: Column {
        spacing: 12
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true
        Accessible.role: Accessible.Dialog
        Accessible.name: "Add an app"
        UiText { width: parent.width; role: "heading"; text: "Add an app" }
        Field {
            id: query
            width: parent.width
            iconName: "search"
            prompt: "Search apps"
            clearable: true
            onTextChanged: list.currentIndex = 0
            Keys.onDownPressed: list.incrementCurrentIndex()
            Keys.onUpPressed: list.decrementCurrentIndex()
            Keys.onPressed: (event) => {
                const page = Math.max(1, Math.floor(list.height / Math.round(40 * Theme.scale)))
                if (event.key === Qt.Key_PageDown) list.currentIndex = Math.min(list.count - 1, list.currentIndex + page)
                else if (event.key === Qt.Key_PageUp) list.currentIndex = Math.max(0, list.currentIndex - page)
                else return
                event.accepted = true
            }
            onAccepted: sheet.add(list.currentIndex)
        }
        ListView {
            id: list
            width: parent.width
            height: Math.max(120, Math.min(340, (sheet.parent ? sheet.parent.height : 520) - 230 * Theme.scale))
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: sheet.found
            reuseItems: true
            keyNavigationEnabled: false
            Accessible.role: Accessible.List
            Accessible.name: "Apps"
            delegate: T.ItemDelegate {
                id: row
                required property var modelData
                required property int index
                width: ListView.view ? ListView.view.width : 0
                height: Math.round(40 * Theme.scale)
                focusPolicy: Qt.NoFocus
                hoverEnabled: true
                Accessible.name: modelData.name + (modelData.running ? ", running" : "")
                Accessible.onPressAction: row.clicked()
                onClicked: sheet.add(index)
                contentItem: Item {
                    AppIcon {
                        id: icon
                        anchors.left: parent.left
                        anchors.leftMargin: 10
                        anchors.verticalCenter: parent.verticalCenter
                        identifier: row.modelData.key
                        name: row.modelData.name
                        size: 24
                    }
                    UiText {
                        anchors.left: icon.right
                        anchors.leftMargin: 10
                        anchors.right: note.left
                        anchors.rightMargin: 10
                        anchors.verticalCenter: parent.verticalCenter
                        text: row.modelData.name
                        Accessible.ignored: true
                    }
                    UiText {
                        id: note
                        anchors.right: parent.right
                        anchors.rightMargin: 14
                        anchors.verticalCenter: parent.verticalCenter
                        role: "caption"
                        color: Theme.text2
                        text: row.modelData.running ? "Running" : ""
                        Accessible.ignored: true
                    }
                }
                background: Rectangle {
                    radius: 8
                    color: row.ListView.isCurrentItem ? Theme.accentTint : row.hovered ? Theme.sunken : "transparent"
                }
            }
            ScrollBar { flickable: list }
            UiText {
                anchors.centerIn: parent
                visible: list.count === 0
                color: Theme.text2
                text: sheet.all.length === 0 ? "There is no other app to add" : "No app is called so"
            }
        }
        UiText {
            width: parent.width
            wrapMode: Text.Wrap
            role: "caption"
            color: Theme.text2
            text: "A running app comes with its windows as they are now."
        }
        Row {
            anchors.right: parent.right
            spacing: 8
            PushButton { text: "Cancel"; onClicked: sheet.close() }
            PushButton {
                text: "Add App"
                kind: "primary"
                enabled: list.count > 0
                onClicked: sheet.add(list.currentIndex)
            }
        }
    }
}
