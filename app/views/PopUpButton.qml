// Shows one of several texts and lets another one be picked.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Button {
    id: control
    property var model: []
    property int current: 0
    property string label  // accessible name
    property bool compact: false
    property bool trailing: false  // stands at the end of its line: so does the menu
    property string emptyText  // the menu's only line while there is nothing to pick
    signal aboutToOpen()       // last chance to fill `model`
    signal picked(int index)

    function openMenu() {
        aboutToOpen()
        menu.above = mapToItem(null, 0, 0).y
        menu.open()
    }

    text: model[current] || ""
    implicitHeight: Math.round((compact ? 30 : 34) * Theme.scale)
    implicitWidth: Math.ceil(words.implicitWidth) + 30 + Math.round(14 * Theme.scale)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.ComboBox
    Accessible.name: label !== "" ? label + ": " + text : text
    Accessible.onPressAction: control.clicked()
    onClicked: openMenu()
    Keys.onReturnPressed: clicked()
    Keys.onDownPressed: openMenu()

    contentItem: Item {
        UiText {
            id: words
            role: "body-medium"
            anchors.verticalCenter: parent.verticalCenter
            anchors.left: parent.left
            anchors.leftMargin: 12
            text: control.text
            Accessible.ignored: true
        }
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            anchors.rightMargin: 10
            name: "chevrons-up-down"
            size: Math.round(14 * Theme.scale)
            color: Theme.text3
        }
    }
    background: Rectangle {
        radius: 9
        color: Theme.raised
        border.width: 1
        border.color: control.hovered ? Theme.text3 : Theme.borderStrong
        FocusRing {
            shown: control.visualFocus
            radius: parent.radius + 4
        }
    }
    MenuPopup {
        id: menu
        property real above: 0  // how much of the window is above the button
        readonly property real below: control.Window.height - above - control.height
        x: control.mirrored !== control.trailing ? control.width - width : 0
        // Never over the button that opens it, where there is room beside it.
        y: below < height + 12 && above > below ? -height - 4 : control.height + 4
        minimum: control.width
        current: control.current
        entries: control.model.length === 0 && control.emptyText !== ""
                 ? [{ text: control.emptyText, enabled: false }]
                 : control.model.map((text, index) => ({ text: text, act: () => control.picked(index) }))
    }
}
