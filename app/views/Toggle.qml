// A switch: position and colour both say which way it stands. It shows `checked`, which stays bound: a click only
// asks, by toggled(), for it to become !checked.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.CheckBox {
    id: control
    property bool small: false
    property bool faded: false  // what it belongs to is off; a click brings that back, and this keeps its state
    property string label
    property string hint  // what stands below its words, for whoever hears them only

    implicitWidth: Math.round((small ? 30 : 38) * Theme.scale)
    implicitHeight: Math.round((small ? 18 : 22) * Theme.scale)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: !enabled || faded && !hovered ? 0.4 : 1
    onClicked: toggled()
    nextCheckState: () => checkState  // only what is bound changes it
    Accessible.name: label
    Accessible.description: hint
    Accessible.checkable: true
    Accessible.checked: control.checked && !faded
    Accessible.onToggleAction: control.clicked()
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: clicked()

    contentItem: Item {}
    background: Rectangle {
        radius: height / 2
        color: control.checked ? control.hovered ? Theme.accentHover : Theme.accent : Theme.switchOff
        Rectangle {
            readonly property real inset: 2
            x: control.checked !== control.mirrored ? parent.width - width - inset : inset
            y: inset
            width: parent.height - 2 * inset
            height: width
            radius: width / 2
            color: "white"
            Behavior on x {
                NumberAnimation { duration: Theme.reducedMotion ? 0 : 140; easing.type: Easing.OutCubic }
            }
        }
        FocusRing {
            shown: control.visualFocus
            radius: parent.radius + 4
        }
    }
}
