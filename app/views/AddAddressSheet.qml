// Adds a web address to a browser of the workspace.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Sheet {
    id: sheet
    property int browser: 0
    property string refusal
    readonly property var browsers: Detail.browsers
    readonly property string key: browsers[browser] ? browsers[browser].key : ""

    onAboutToShow: {
        browser = 0
        refusal = ""
        address.clear()
    }
    onOpened: address.forceActiveFocus(Qt.PopupFocusReason)
    function add() {
        refusal = Detail.addAddress(key, address.text)
        if (refusal === "") close()
        else address.forceActiveFocus(Qt.OtherFocusReason)
    }

    contentItem: Column {
        spacing: 12
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true
        Accessible.role: Accessible.Dialog
        Accessible.name: "Add an address"
        UiText { width: parent.width; role: "heading"; text: "Add an address" }
        Field {
            id: address
            width: parent.width
            iconName: "globe"
            prompt: "example.com"
            maximumLength: 8192
            Accessible.name: "Web address"
            onEdited: sheet.refusal = ""
            onAccepted: sheet.add()
        }
        UiText {
            width: parent.width
            visible: text !== ""
            wrapMode: Text.Wrap
            role: "caption"
            color: Theme.danger
            text: sheet.refusal
            Accessible.role: Accessible.AlertMessage
        }
        Row {
            width: parent.width
            spacing: 10
            UiText {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.text2
                text: sheet.browsers.length > 1 ? "Opens in" : "Opens in " + (sheet.browsers[0] ? sheet.browsers[0].name : "")
            }
            PopUpButton {
                visible: sheet.browsers.length > 1
                compact: true
                label: "Browser"
                model: sheet.browsers.map(one => one.name)
                current: sheet.browser
                onPicked: (index) => sheet.browser = index
            }
        }
        UiText {
            width: parent.width
            visible: text !== ""
            wrapMode: Text.Wrap
            role: "caption"
            color: Theme.text2
            text: sheet.visible ? Detail.addressNote(sheet.key) : ""
        }
        Row {
            anchors.right: parent.right
            spacing: 8
            PushButton { text: "Cancel"; onClicked: sheet.close() }
            PushButton {
                text: "Add Address"
                kind: "primary"
                enabled: address.text.trim() !== ""
                onClicked: sheet.add()
            }
        }
    }
}
