// A row of the switcher. The keyboard stays in the field above: rows are picked by it or by the pointer.
import QtQuick
import Quillo.Core

Rectangle {
    id: root
    property string title
    property string detail
    property bool highlighted: false
    property real trailingWidth: 0
    signal picked()

    implicitHeight: Math.max(Math.round(56 * Theme.scale), words.height + 16)
    radius: 10
    color: highlighted ? Theme.accentTint : "transparent"
    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: detail
    Accessible.selected: highlighted
    Accessible.onPressAction: root.picked()

    // Weaker than the highlight, on light and on dark.
    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        visible: area.containsMouse && !root.highlighted
        color: Theme.text
        opacity: 0.05
    }
    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.picked()
    }
    Column {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: 54
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 54 - 10 - (root.trailingWidth > 0 ? root.trailingWidth + 14 : 0)
        spacing: 1
        UiText {
            width: parent.width
            role: "name"
            text: root.title
            wrapMode: Theme.scale > 1 ? Text.Wrap : Text.NoWrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        UiText {
            width: parent.width
            visible: text !== ""
            role: "caption"
            text: root.detail
            color: Theme.text2
            Accessible.ignored: true
        }
    }
}
