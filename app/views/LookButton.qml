// A workspace's icon on its colour, which opens the choice of both.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Button {
    id: control
    property string symbol
    property string colorName
    signal iconPicked(string value)
    signal colorPicked(string value)

    implicitWidth: 56
    implicitHeight: 56
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Accessible.name: "Change icon and color"
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onClicked: choices.open()

    contentItem: Badge {
        icon: control.symbol
        colorName: control.colorName
        size: control.width
        Rectangle {
            visible: control.hovered || control.visualFocus || choices.visible
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: -4
            width: 22
            height: 22
            radius: 11
            color: Theme.raised
            border.width: 1
            border.color: Theme.borderStrong
            Icon { anchors.centerIn: parent; name: "pencil"; size: 12; color: Theme.text2 }
        }
    }
    background: FocusRing {
        shown: control.visualFocus
        radius: control.width * 0.28 + 4
    }
    ToolTip {
        visible: control.hovered && !control.down && !choices.visible
        text: control.Accessible.name
    }
    Sheet {
        id: choices
        parent: control
        x: control.mirrored ? control.width - width : 0
        y: control.height + 8
        width: 304  // for all colours in one line, and the symbols in two
        padding: 18
        margins: 8
        dim: false
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
        onOpened: look.focusFirst()
        contentItem: LookChoices {
            id: look
            colorSpacing: 4
            LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
            LayoutMirroring.childrenInherit: true
            icon: control.symbol
            colorName: control.colorName
            onIconPicked: (value) => control.iconPicked(value)
            onColorPicked: (value) => control.colorPicked(value)
        }
    }
}
