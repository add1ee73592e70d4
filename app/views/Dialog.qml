// Asks once before something that cannot be taken back.
import QtQuick
import Quillo.Core

Sheet {
    id: dialog
    property string title
    property string text
    property string actionText
    property string cancelText: "Cancel"
    property string otherText  // of a third way, between the two; empty: there is none
    property bool danger: false
    property bool armed: true          // whether it can be confirmed by now
    property Component details: null  // between the text and the buttons
    property string actionKind: danger ? "danger" : "primary"
    signal confirmed()
    signal otherChosen()
    onVisibleChanged: if (visible) cancel.forceActiveFocus(Qt.TabFocusReason)
    // Where the window comes up with it, the keyboard is there because of the window, which shows no ring.
    readonly property bool looked: visible && cancel.Window.active
    onLookedChanged: if (looked) Qt.callLater(() => { if (cancel?.activeFocus) cancel.focusReason = Qt.TabFocusReason })

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
                onClicked: dialog.close()
                KeyNavigation.right: middle
            }
            PushButton {
                id: middle
                visible: text !== ""
                text: dialog.otherText
                onClicked: { dialog.close(); dialog.otherChosen() }
                KeyNavigation.left: cancel
                KeyNavigation.right: action
            }
            PushButton {
                id: action
                text: dialog.actionText
                enabled: dialog.armed
                kind: dialog.actionKind
                onClicked: { dialog.close(); dialog.confirmed() }
                KeyNavigation.left: middle
            }
        }
    }
}
