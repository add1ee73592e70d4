// One of a few icons or colours: a single stop of the Tab key, in which the arrow keys choose.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Flow {
    id: root
    property var entries: []  // { value, name }
    property string current
    property string label
    property real cell: 34
    property bool round: false
    property Component face  // gets `value`, `on`, `hovered`
    readonly property int place: entries.findIndex((entry) => entry.value === current)
    signal picked(string value)

    spacing: 6
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    function focusCurrent() { repeater.itemAt(Math.max(0, place)).forceActiveFocus(Qt.PopupFocusReason) }
    function step(index, by) {
        const next = Math.min(entries.length - 1, Math.max(0, index + by))
        repeater.itemAt(next).forceActiveFocus(Qt.TabFocusReason)  // first: the one in use stays a stop of Tab
        picked(entries[next].value)
    }

    Repeater {
        id: repeater
        model: root.entries
        T.RadioButton {
            id: choice
            required property var modelData
            required property int index
            readonly property bool on: root.current === modelData.value

            width: root.cell
            height: root.cell
            focusPolicy: index === Math.max(0, root.place) ? Qt.StrongFocus : Qt.ClickFocus
            hoverEnabled: true
            onClicked: root.picked(modelData.value)
            Keys.onReturnPressed: click()
            Keys.onRightPressed: root.step(index, root.LayoutMirroring.enabled ? -1 : 1)
            Keys.onLeftPressed: root.step(index, root.LayoutMirroring.enabled ? 1 : -1)
            Accessible.name: modelData.name
            checked: on
            Accessible.onPressAction: choice.click()

            contentItem: Loader {
                readonly property string value: choice.modelData.value
                readonly property bool on: choice.on
                readonly property bool hovered: choice.hovered
                sourceComponent: root.face
            }
            background: FocusRing {
                shown: choice.visualFocus
                gap: root.round ? 5 : 0  // outside the ring of the chosen one
                radius: root.round ? width / 2 : 11
            }
            ToolTip {
                visible: choice.hovered
                text: choice.modelData.name
            }
        }
    }
}
