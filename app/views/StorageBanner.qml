// What is wrong with the files of the library or the settings, or is to be known of a capture.
import QtQuick
import Quillo.Core

Rectangle {
    id: root
    property var lines: []
    property bool showsFiles: false   // there are some to look at
    property bool dismissable: true
    signal filesAsked()
    signal dismissed()

    visible: lines.length > 0
    height: visible ? Math.max(list.height + 24, files.visible ? files.height + 12 : 0) : 0
    radius: 12
    color: Theme.warningTint
    Accessible.role: Accessible.AlertMessage
    Accessible.name: lines.join("\n")
    Accessible.ignored: !visible

    Icon {
        anchors.left: parent.left
        anchors.leftMargin: 16
        y: 12
        name: "triangle-alert"
        size: Math.round(18 * Theme.scale)
        color: Theme.warning
    }
    Flickable {
        id: list
        anchors.left: parent.left
        anchors.leftMargin: 28 + Math.round(18 * Theme.scale)
        anchors.right: files.visible ? files.left : close.visible ? close.left : parent.right
        anchors.rightMargin: 12
        y: 12
        // Five lines; where issues have two of them, nothing of the sixth.
        readonly property real most: 5 * Theme.lineHeight("body") + 4 * column.spacing
        height: column.height <= most ? column.height : most - Math.round(2 * Theme.scale)
        contentHeight: column.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        Column {
            id: column
            width: parent.width
            spacing: 3
            Repeater {
                model: root.lines
                UiText {
                    required property string modelData
                    anchors.left: column.left
                    width: column.width - (list.contentHeight > list.height ? 12 : 0)
                    text: modelData
                    wrapMode: Text.Wrap
                }
            }
        }
        ScrollBar { flickable: list }
    }
    PushButton {
        id: files
        anchors.right: close.left
        anchors.rightMargin: 4
        y: Math.round(12 + (Theme.lineHeight("body") - height) / 2)
        visible: root.showsFiles
        compact: true
        text: "Show files"
        onClicked: root.filesAsked()
    }
    IconButton {
        id: close
        anchors.right: parent.right
        anchors.rightMargin: 8
        y: 6
        size: 28
        visible: root.dismissable
        iconName: "x"
        tip: "Dismiss"
        onClicked: root.dismissed()
    }
}
