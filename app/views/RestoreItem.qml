// One line of a restore: what it is about at the left, what came of it at the right, and below why not.
import QtQuick
import Quillo.Core

Item {
    id: root
    required property string app
    required property string identifier
    required property string text
    required property string heading
    required property string reason
    required property string word
    required property string outcome
    required property string windowState
    required property string trouble
    required property string desktop
    required property string exact
    readonly property bool bad: trouble !== ""
    readonly property color ink: windowState === "failed" ? Theme.danger : windowState === "skipped" ? Theme.warning
                                 : windowState === "restored" ? Theme.success : Theme.text2
    readonly property var symbols: ({ restored: "check", adjusted: "square-arrow-out-up-right", launched: "arrow-up-right",
                                      opened: "folder-open", createdDesktops: "monitor", note: "info", failed: "x", skipped: "minus" })

    implicitHeight: Math.max(Math.round((second.visible ? 48 : 34) * Theme.scale), words.height + 14) + (bad ? 4 : 0)
    // A transition of the list would stop half-way where the rows are filtered meanwhile.
    Component.onCompleted: if (Restore.running) arrival.start()
    NumberAnimation { id: arrival; target: root; property: "opacity"; from: 0; to: 1; duration: Theme.fade(140) }
    Accessible.role: Accessible.ListItem
    Accessible.name: text

    Rectangle {
        visible: root.bad
        x: 9
        y: 2
        width: parent.width - 18
        height: parent.height - 4
        radius: 8
        color: root.windowState === "failed" ? Theme.dangerTint : Theme.warningTint
    }
    AppIcon {
        anchors.left: parent.left
        anchors.leftMargin: 15
        anchors.verticalCenter: parent.verticalCenter
        identifier: root.identifier
        name: root.app
        size: 20
    }
    Column {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: 45
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 45 - 44 - (first.visible ? first.width + 10 : 0)
        Row {
            width: parent.width
            UiText {
                id: heading
                width: Math.min(Math.ceil(implicitWidth), words.width - place.width)
                text: root.heading
                wrapMode: Theme.scale > 1 ? Text.Wrap : Text.NoWrap
                maximumLineCount: 4
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            UiText {
                id: place
                width: visible ? Math.ceil(implicitWidth) : 0
                visible: root.desktop !== ""
                text: "\u00a0· " + root.desktop
                color: Theme.text2
                Accessible.ignored: true
            }
        }
        UiText {
            id: second
            width: parent.width
            visible: root.reason !== ""
            role: "caption"
            text: root.reason
            color: root.bad ? root.ink : Theme.text2
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
    HoverHandler { id: pointer }
    // What the line leaves out: the reason in the log's words, the rest of a long title.
    ToolTip {
        readonly property string whole: heading.truncated ? root.heading : ""
        visible: pointer.hovered && text !== ""
        text: root.exact === "" ? whole : root.exact
    }
    UiText {
        id: first
        anchors.right: parent.right
        anchors.rightMargin: 42
        anchors.verticalCenter: parent.verticalCenter
        visible: root.word !== ""
        role: "caption"
        text: root.word
        color: Theme.text2
        Accessible.ignored: true
    }
    Icon {
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        name: root.symbols[root.outcome] || "info"
        size: 16
        color: root.ink
    }
}
