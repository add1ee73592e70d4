// A line of text to type.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.TextField {
    id: control
    property string prompt
    property string iconName
    property bool large: false
    property bool bare: false  // without an edge of its own
    property bool clearable: false
    readonly property real iconSize: Math.round(16 * Theme.scale)
    signal edited(string text)

    implicitHeight: Math.round((large ? 44 : 34) * Theme.scale)
    implicitWidth: 220
    // What it begins and ends with, wherever that is.
    readonly property real before: bare ? 0 : iconName ? iconSize + 20 : 11
    readonly property real after: bare ? 0 : clear.visible ? clear.width + 6 : 11
    readonly property bool mirrored: LayoutMirroring.enabled
    leftPadding: mirrored ? after : before
    rightPadding: mirrored ? before : after
    horizontalAlignment: TextInput.AlignLeft
    verticalAlignment: TextInput.AlignVCenter
    font: Theme.font(large ? "field-large" : "body")
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.onAccent
    selectByMouse: true
    renderType: Text.NativeRendering
    maximumLength: 500
    onTextEdited: edited(text)
    Accessible.role: Accessible.EditableText
    Accessible.name: prompt

    cursorDelegate: Rectangle {
        width: 1.5
        color: Theme.accentText
        visible: control.activeFocus && blink.on
        Timer {
            id: blink
            property bool on: true
            interval: 600
            repeat: true
            running: control.activeFocus
            onTriggered: on = !on
            onRunningChanged: on = true
        }
    }
    UiText {
        anchors.fill: parent
        anchors.leftMargin: (control.mirrored ? control.rightPadding : control.leftPadding)
                            + (control.bare ? 4 : 3)  // beside the caret
        anchors.rightMargin: control.mirrored ? control.leftPadding : control.rightPadding
        verticalAlignment: Text.AlignVCenter
        font: control.font
        text: control.prompt
        color: Theme.text3
        visible: control.length === 0 && control.preeditText === ""
        Accessible.ignored: true
    }
    Icon {
        visible: control.iconName !== "" && !control.bare
        anchors.verticalCenter: parent.verticalCenter
        anchors.left: parent.left
        anchors.leftMargin: 12
        name: control.iconName
        size: control.iconSize
        color: Theme.text3
    }
    IconButton {
        id: clear
        visible: control.clearable && control.length > 0
        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        size: Math.round(26 * Theme.scale)
        iconSize: Math.round(14 * Theme.scale)
        iconName: "x"
        tip: "Clear"
        focusPolicy: Qt.NoFocus
        onClicked: { control.clear(); control.edited("") }
    }
    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            visible: control.activeFocus && !control.bare
            radius: edge.radius + 3
            color: Theme.focus
            opacity: 0.28
        }
        Rectangle {
            id: edge
            anchors.fill: parent
            visible: !control.bare
            radius: control.large ? 11 : 9
            color: Theme.surface
            border.width: 1
            border.color: control.activeFocus ? Theme.focus : control.hovered ? Theme.text3 : Theme.borderStrong
        }
    }
}
