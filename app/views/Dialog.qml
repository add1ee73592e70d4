// Asks once before something that cannot be taken back.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

T.Popup {
    id: dialog
    property string title
    property string text
    property string actionText
    property string cancelText: "Cancel"
    property bool danger: false
    property bool armed: true          // whether it can be confirmed by now
    property Component details: null  // between the text and the buttons
    property string actionKind: danger ? "danger" : "primary"
    signal confirmed()
    signal declined()  // by its button; Escape only closes
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
    onVisibleChanged: if (visible) cancel.forceActiveFocus(Qt.TabFocusReason)

    background: Rectangle {
        radius: 16
        color: Theme.raised
        border.width: 1
        border.color: Theme.panelEdge
        Shadow { level: 3; radius: 16 }
    }
    contentItem: Column {
        spacing: 8
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.title
        Accessible.description: dialog.text
        UiText {
            width: parent.width
            role: "heading"
            text: dialog.title
            wrapMode: Text.Wrap
        }
        UiText {
            width: parent.width
            text: dialog.text
            visible: text !== ""
            color: Theme.text2
            wrapMode: Text.Wrap
        }
        Loader {
            width: parent.width
            visible: dialog.details !== null
            sourceComponent: dialog.details
        }
        Item { width: 1; height: 8 }
        Row {
            anchors.right: parent.right
            spacing: 8
            PushButton {
                id: cancel
                text: dialog.cancelText
                onClicked: { dialog.close(); dialog.declined() }
                KeyNavigation.right: action
            }
            PushButton {
                id: action
                text: dialog.actionText
                enabled: dialog.armed
                kind: dialog.actionKind
                onClicked: { dialog.close(); dialog.confirmed() }
                KeyNavigation.left: cancel
            }
        }
    }
}
