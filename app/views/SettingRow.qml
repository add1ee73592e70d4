// A row of the settings: what it is at the left, the control at the right.
import QtQuick
import Quillo.Core

Item {
    id: root
    property string title
    property string caption
    property color captionColor: Theme.text2
    property bool separator: true
    property bool sub: false
    property real padding: 16
    default property alias control: place.data
    /// The switch that a click anywhere on the row turns; null where there is none.
    property Item toggle: place.children.length === 1 && place.children[0].toggled ? place.children[0] : null

    width: parent ? parent.width : 400
    implicitHeight: Math.max(sub ? 44 : 52, words.implicitHeight + 20, place.height + 16)

    MouseArea {
        anchors.fill: parent
        enabled: root.toggle !== null && root.toggle.enabled && root.toggle.visible
        onClicked: root.toggle.toggled()
    }
    Column {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: root.padding
        anchors.verticalCenter: parent.verticalCenter
        width: root.width - 2 * root.padding - (place.width > 0 ? place.width + 16 : 0)
        spacing: 3
        UiText {
            width: parent.width
            role: "body-medium"
            text: root.title
            wrapMode: Text.Wrap
        }
        UiText {
            width: parent.width
            visible: text !== ""
            role: "caption"
            text: root.caption
            color: root.captionColor
            wrapMode: Text.Wrap
        }
    }
    Item {
        id: place
        anchors.right: parent.right
        anchors.rightMargin: root.padding
        anchors.verticalCenter: parent.verticalCenter
        width: childrenRect.width
        height: childrenRect.height
    }
    Rectangle {
        visible: root.separator
        anchors.left: parent.left
        anchors.leftMargin: root.padding
        width: parent.width - root.padding
        height: 1
        anchors.bottom: parent.bottom
        color: Theme.border
    }
}
