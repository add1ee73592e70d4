// Name, icon, colour and map of what is under review: the left column, or in a narrow window what stands above
// the list, the map first.
import QtQuick
import Quillo.Core

Item {
    id: root
    property bool mapFirst: false
    property real mapHeight: Math.round(width * 0.627)
    readonly property var colors: Theme.workspaces[Review.color] || Theme.workspaces["slate"]
    /// What is to be seen with the map at once: in a narrow window no more than the name.
    readonly property real rest: mapBlock.spacing + legend.height + (mapFirst ? 16 + name.height : below.y)
    implicitHeight: column.implicitHeight

    function focusName() { name.forceActiveFocus() }
    /// A key that is still held down, or pressed again, from what brought the review up saves nothing.
    function finish(event) { if (!event.isAutoRepeat && !Presses.holding()) Review.save() }

    Column {
        id: column
        width: parent.width
        Item {
            id: above
            width: parent.width
            height: root.mapFirst ? mapBlock.height + 16 : 0
        }
        Field {
            id: name
            width: parent.width
            large: true
            leftPadding: LayoutMirroring.enabled ? 11 : 50
            rightPadding: LayoutMirroring.enabled ? 50 : 11
            prompt: "Name this workspace"
            text: Review.name
            onEdited: (text) => Review.name = text
            Keys.onReturnPressed: (event) => root.finish(event)
            Keys.onEnterPressed: (event) => root.finish(event)
            Badge {
                anchors.left: parent.left
                anchors.leftMargin: 7
                anchors.verticalCenter: parent.verticalCenter
                icon: Review.icon
                colorName: Review.color
                size: 32
            }
        }
        Item { width: 1; height: 18 }
        UiText { width: parent.width; text: "Icon"; color: Theme.text2; Accessible.ignored: true }
        Item { width: 1; height: 6 }
        ChoiceRow {
            x: -2
            width: parent.width + 4
            label: "Icon"
            current: Review.icon
            entries: root.named(Review.icons)
            onPicked: (value) => Review.icon = value
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
            spacing: 12
            cell: 30
            round: true
            label: "Color"
            current: Review.color
            entries: root.named(Review.colors)
            onPicked: (value) => Review.color = value
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
        Item { width: 1; height: root.mapFirst ? 24 : 20 }
        Item {
            id: below
            width: parent.width
            height: root.mapFirst ? 0 : mapBlock.height
        }
    }

    Column {
        id: mapBlock
        parent: root.mapFirst ? above : below
        width: root.width
        spacing: 10
        Rectangle {
            width: parent.width
            height: root.mapHeight
            radius: 16
            color: root.colors.tint
            DesktopMap {
                anchors.fill: parent
                source: Review.map
                colorName: Review.color
                style: "review"
                states: Review.states
            }
        }
        Row {
            id: legend
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 16
            Row {
                spacing: 7
                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 16
                    height: 12
                    radius: 3
                    color: root.colors.tileFront
                    border.width: 1
                    border.color: root.colors.tileBorder
                }
                UiText { text: Review.savedText; role: "caption"; color: Theme.text2 }
            }
            Row {
                spacing: 7
                visible: Review.leftOutText !== ""
                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 16
                    height: 12
                    radius: 3
                    color: "transparent"
                    border.width: 1
                    border.color: Theme.text3
                    Repeater {
                        model: 3
                        Rectangle {
                            required property int index
                            x: index * 4 - 1
                            y: 5.5
                            width: 10
                            height: 1
                            rotation: -50
                            antialiasing: true
                            color: Theme.text3
                            opacity: 0.7
                        }
                    }
                }
                UiText { text: Review.leftOutText; role: "caption"; color: Theme.text2 }
            }
        }
    }

    readonly property var names: ({ "square.stack.3d.up": "Layers", "paintbrush.pointed": "Paintbrush",
                                    "gamecontroller": "Game controller", "music.note": "Music" })
    function named(values) {
        return values.map((value) => ({ value: value, name: names[value] || value[0].toUpperCase() + value.slice(1) }))
    }
}
