// A row of the settings: what it is at the left, the control at the right, or below where the two have no room.
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

    readonly property bool mirrored: LayoutMirroring.enabled
    readonly property real room: width - 2 * padding
    readonly property bool stacked: place.implicitWidth > room * 0.4
                                    && name.implicitWidth > room - place.implicitWidth - 16

    width: parent ? parent.width : 400
    implicitHeight: stacked ? words.implicitHeight + 8 + place.height + 20
                            : Math.max(sub ? 44 : 52, words.implicitHeight + 18, place.height + 12)

    Binding {
        target: root.toggle
        property: "hint"
        value: root.caption
        when: root.toggle !== null && root.toggle.hint !== undefined
    }
    MouseArea {
        anchors.fill: parent
        enabled: root.toggle !== null && root.toggle.enabled && root.toggle.visible
        onClicked: root.toggle.toggled()
    }
    Column {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: root.padding
        y: root.stacked ? 9 : Math.round((root.height - height) / 2)
        width: root.room - (place.width > 0 && !root.stacked ? place.width + 16 : 0)
        UiText {
            id: name
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
            lineHeight: Math.round(17 * Theme.scale)
        }
    }
    Row {  // what is not shown takes no room
        id: place
        x: root.stacked !== root.mirrored ? root.padding : root.width - root.padding - width
        y: root.stacked ? words.y + words.height + 8 : Math.round((root.height - height) / 2)
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
