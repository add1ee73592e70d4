// Name, icon, colour and map of what is under review: the left column, or in a narrow window what stands above
// the list, the map first.
import QtQuick
import Quillo.Core

Item {
    id: root
    property bool mapFirst: false
    property real mapHeight: Math.round(width * 0.627)
    // Of the map, as it has them.
    property var pointedKeys: []
    property var pickedKeys: []
    signal pointed(string key)
    signal picked(string key)
    onPickedKeysChanged: if (pickedKeys.length === 1) map.show(pickedKeys[0])
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
        LookChoices {
            width: parent.width
            icon: Review.icon
            colorName: Review.color
            onIconPicked: (value) => Review.icon = value
            onColorPicked: (value) => Review.color = value
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
                id: map
                anchors.fill: parent
                source: Review.map
                pickable: true
                order: Review.map ? Review.allWindowKeys() : []
                pickedKeys: root.pickedKeys
                pointedKeys: root.pointedKeys
                onPointed: (key) => root.pointed(key)
                onPicked: (key) => root.picked(key)
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
}
