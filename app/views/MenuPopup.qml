// A menu of { text, iconName, enabled, danger, separator, act }; `current` marks the one that holds now.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Popup {
    id: popup
    property var entries: []
    property int current: -1
    property real minimum: 200  // width
    readonly property bool marked: current >= 0 || entries.some(entry => entry.iconName)  // some have a symbol
    property Item before: null  // has the keyboard again afterwards: else the window itself would
    onAboutToShow: before = parent.Window.activeFocusItem
    onClosed: {
        const window = parent ? parent.Window.window : null
        if (before && window && window.activeFocusItem === window.contentItem) before.forceActiveFocus(Qt.PopupFocusReason)
    }

    padding: 6
    margins: 8
    implicitWidth: Math.max(minimum, list.implicitWidth + 2 * padding)
    implicitHeight: list.implicitHeight + 2 * padding
    focus: true
    modal: true
    dim: false
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onVisibleChanged: if (visible) list.focusRow(current >= 0 ? current : 0, 1)  // not only once it has faded in

    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.fade(160) } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.fade(110) } }

    background: Rectangle {
        radius: 12
        color: Theme.raised
        border.width: 1
        border.color: Theme.panelEdge
        Shadow { level: 3; radius: 12 }
    }
    contentItem: Flickable {
        id: place
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true
        implicitWidth: list.implicitWidth
        implicitHeight: list.implicitHeight
        contentHeight: list.implicitHeight
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        clip: interactive
        function reveal(row) {
            if (row.y < contentY) contentY = row.y
            else if (row.y + row.height > contentY + height) contentY = row.y + row.height - height
        }
        Column {
            id: list
            Accessible.role: Accessible.PopupMenu
            width: place.width
            function focusRow(index, step) {
                for (let i = index, tries = 0; tries < repeater.count; i = (i + step + repeater.count) % repeater.count, ++tries) {
                    const row = repeater.itemAt(i)
                    if (row && row.enabled && !row.entry.separator) { row.forceActiveFocus(Qt.TabFocusReason); return }
                }
            }
            Repeater {
                id: repeater
                model: popup.entries
                T.MenuItem {
                    id: row
                    required property var modelData
                    required property int index
                    readonly property var entry: modelData
                    readonly property color ink: entry.danger ? Theme.danger : Theme.text

                    enabled: entry.enabled !== false && !entry.separator
                    width: Math.max(list.width, implicitWidth)
                    implicitWidth: line.anchors.leftMargin + line.implicitWidth + 12
                    implicitHeight: entry.separator ? 9 : Math.round(32 * Theme.scale)
                    opacity: enabled || entry.separator ? 1 : 0.4
                    hoverEnabled: true
                    onActiveFocusChanged: if (activeFocus) place.reveal(row)
                    onHoveredChanged: if (hovered && enabled) forceActiveFocus(Qt.MouseFocusReason)
                    onClicked: { popup.close(); if (entry.act) entry.act() }
                    Keys.onReturnPressed: clicked()
                    Keys.onEnterPressed: clicked()
                    Keys.onDownPressed: list.focusRow((index + 1) % repeater.count, 1)
                    Keys.onUpPressed: list.focusRow((index - 1 + repeater.count) % repeater.count, -1)
                    Keys.onPressed: (event) => {
                        if (event.key === Qt.Key_Home || event.key === Qt.Key_PageUp) list.focusRow(0, 1)
                        else if (event.key === Qt.Key_End || event.key === Qt.Key_PageDown) list.focusRow(repeater.count - 1, -1)
                        else return
                        event.accepted = true
                    }
                    Accessible.ignored: entry.separator === true
                    Accessible.name: entry.text || ""
                    Accessible.checked: popup.current === index
                    Accessible.onPressAction: row.clicked()

                    background: Rectangle {
                        radius: 8
                        color: row.activeFocus ? row.entry.danger ? Theme.dangerTint : Theme.accentTint : "transparent"
                        Rectangle {
                            visible: row.entry.separator === true
                            anchors.verticalCenter: parent.verticalCenter
                            x: 8
                            width: parent.width - 16
                            height: 1
                            color: Theme.border
                        }
                    }
                    contentItem: Item {
                        visible: !row.entry.separator
                        Icon {
                            anchors.left: parent.left
                            anchors.leftMargin: 10
                            anchors.verticalCenter: parent.verticalCenter
                            name: popup.current === row.index ? "check" : row.entry.iconName || "check"
                            visible: popup.current === row.index || (row.entry.iconName || "") !== ""
                            size: Math.round(15 * Theme.scale)
                            color: row.entry.danger ? Theme.danger : Theme.text2
                        }
                        UiText {
                            id: line
                            anchors.left: parent.left
                            anchors.leftMargin: popup.marked ? 19 + Math.round(15 * Theme.scale) : 12
                            width: Math.min(implicitWidth, 420)
                            anchors.verticalCenter: parent.verticalCenter
                            text: row.entry.text || ""
                            color: row.ink
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
    }
}
