// One of a few choices, side by side.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Rectangle {
    id: root
    property var model: []
    property int current: 0
    property bool mini: false
    property var faint: []  // for each, whether there is nothing behind it
    property string label
    signal picked(int index)

    implicitWidth: row.implicitWidth + 4
    implicitHeight: row.implicitHeight + 4
    radius: 8
    // Small ones stand on walls of many colours.
    color: mini ? Qt.rgba(Theme.text.r, Theme.text.g, Theme.text.b, 0.08) : Theme.sunken
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    Row {
        id: row
        x: 2
        y: 2
        Repeater {
            id: segments
            model: root.model
            T.RadioButton {
                id: segment
                required property string modelData
                required property int index
                readonly property bool on: root.current === index
                readonly property bool hollow: root.faint[index] === true

                implicitWidth: Math.ceil(words.implicitWidth) + (root.mini ? 16 : 24)
                implicitHeight: Math.round((root.mini ? 20 : 26) * Theme.scale)
                focusPolicy: Qt.StrongFocus
                onClicked: root.picked(index)
                Keys.onReturnPressed: clicked()
                Keys.onRightPressed: step(mirrored ? -1 : 1)
                Keys.onLeftPressed: step(mirrored ? 1 : -1)
                function step(by) {
                    const next = segments.itemAt(index + by)
                    if (!next) return
                    root.picked(index + by)
                    next.forceActiveFocus(Qt.TabFocusReason)
                }
                Accessible.name: hollow ? modelData + ", empty" : modelData
                checked: on
                Accessible.onPressAction: segment.clicked()

                background: Rectangle {
                    radius: 6
                    color: segment.on ? Theme.raised : "transparent"
                    border.width: segment.on ? 1 : 0
                    border.color: Theme.border
                    FocusRing { shown: segment.visualFocus; radius: 8; gap: 0 }
                }
                contentItem: Item {
                    UiText {
                        id: words
                        anchors.centerIn: parent
                        role: root.mini ? "map-desktop" : "body-medium"
                        text: segment.modelData
                        color: segment.hollow ? Theme.text3 : segment.on ? Theme.text : Theme.text2
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
