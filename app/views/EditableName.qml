// A name that is changed where it stands: a click or Return begins, Return ends, Escape leaves it as it was.
import QtQuick
import Quillo.Core

Item {
    id: root
    property string name
    property bool editing: false
    signal renamed(string name)

    function begin() {
        editing = true
        field.text = name
        field.forceActiveFocus(Qt.OtherFocusReason)
        field.selectAll()
    }
    function finish(keep) {
        if (!editing) return
        editing = false
        if (keep) renamed(field.text)
    }

    // The field needs room for its halo above; below, the next line leaves it.
    readonly property real halo: 3
    implicitHeight: editing ? Math.max(title.height, halo + field.height) : title.height

    UiText {
        id: title
        visible: !root.editing
        anchors.left: parent.left
        width: Math.min(implicitWidth, parent.width - pencil.width - 4)
        role: "title"
        text: root.name
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        MouseArea { anchors.fill: parent; cursorShape: Qt.IBeamCursor; onClicked: root.begin() }
    }
    IconButton {
        id: pencil
        visible: !root.editing
        anchors.left: parent.left
        anchors.leftMargin: title.contentWidth + 4
        anchors.verticalCenter: title.verticalCenter
        size: Math.round(26 * Theme.scale)
        iconSize: Math.round(14 * Theme.scale)
        iconName: "pencil"
        tip: "Rename"
        onClicked: root.begin()
    }
    Field {
        id: field
        visible: root.editing
        width: parent.width
        anchors.bottom: parent.bottom
        prompt: "Workspace name"
        onAccepted: root.finish(true)
        Keys.onEscapePressed: root.finish(false)
        onActiveFocusChanged: if (!activeFocus) root.finish(true)
    }
}
