// The symbols and colours that a workspace may have.
import QtQuick
import Quillo.Core

Column {
    id: root
    property string icon
    property string colorName
    property real colorSpacing: 12
    readonly property var colors: Theme.workspaces[colorName] || Theme.workspaces["slate"]
    signal iconPicked(string value)
    signal colorPicked(string value)

    UiText { width: parent.width; text: "Icon"; color: Theme.text2; Accessible.ignored: true }
    Item { width: 1; height: 6 }
    function focusFirst() { icons.focusCurrent() }
    ChoiceRow {
        id: icons
        x: -2
        width: parent.width + 4
        label: "Icon"
        current: root.icon
        entries: root.named(Review.icons)
        onPicked: (value) => root.iconPicked(value)
        face: Component {
            Rectangle {
                radius: 9
                color: on ? root.colors.base : "transparent"
                Rectangle {
                    anchors.fill: parent
                    radius: 9
                    visible: hovered && !on
                    color: Theme.text
                    opacity: 0.06
                }
                Icon {
                    anchors.centerIn: parent
                    name: Theme.workspaceSymbol(value)
                    size: 19
                    color: on ? root.colors.on : Theme.text2
                }
            }
        }
    }
    Item { width: 1; height: 18 }
    UiText { width: parent.width; text: "Color"; color: Theme.text2; Accessible.ignored: true }
    Item { width: 1; height: 6 }
    ChoiceRow {
        x: -4
        width: parent.width + 8
        spacing: root.colorSpacing
        cell: 30
        round: true
        label: "Color"
        current: root.colorName
        entries: root.named(Review.colors)
        onPicked: (value) => root.colorPicked(value)
        face: Component {
            Item {
                readonly property var swatch: Theme.workspaces[value]
                Rectangle {
                    anchors.fill: parent
                    anchors.margins: -2
                    visible: on
                    radius: width / 2
                    color: "transparent"
                    border.width: 2
                    border.color: swatch.base
                }
                Rectangle {
                    anchors.centerIn: parent
                    width: on ? 24 : 22
                    height: width
                    radius: width / 2
                    color: swatch.base
                    Icon {
                        anchors.centerIn: parent
                        visible: on
                        name: "check"
                        size: 14
                        color: swatch.on
                    }
                }
            }
        }
    }

    readonly property var names: ({ "square.stack.3d.up": "Layers", "paintbrush.pointed": "Paintbrush",
                                    "gamecontroller": "Game controller", "music.note": "Music" })
    function named(values) {
        return values.map((value) => ({ value: value, name: names[value] || value[0].toUpperCase() + value.slice(1) }))
    }
}
