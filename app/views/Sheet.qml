// What stands over the page until it is closed, and gives the keyboard back to where it was.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Popup {
    id: sheet
    property Item before: null  // has the keyboard again afterwards: else the window itself would
    onAboutToShow: {
        before = parent.Window.activeFocusItem
        Presses.pageCame()
    }
    onAboutToHide: Presses.pageCame()
    onClosed: {
        const window = parent ? parent.Window.window : null
        if (before && window && window.activeFocusItem === window.contentItem) before.forceActiveFocus(Qt.PopupFocusReason)
    }

    parent: T.Overlay.overlay
    x: Math.round((parent.width - width) / 2)
    y: Math.round((parent.height - height) / 2 - parent.height / 20)
    width: Math.min(400, (parent ? parent.width : 440) - 40)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 24
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape

    T.Overlay.modal: Rectangle { color: Theme.dark ? "#99000000" : "#52101828" }
    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.fade(160) } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.fade(110) } }

    background: Rectangle {
        radius: 16
        color: Theme.raised
        border.width: 1
        border.color: Theme.panelEdge
        Shadow { level: 3; radius: 16 }
    }
}
