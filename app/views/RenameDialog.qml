// Asks for the new name of a workspace.
import QtQuick
import Quillo.Core

Sheet {
    id: sheet
    property string name
    signal renamed(string name)

    onAboutToShow: field.text = name
    onOpened: {
        field.forceActiveFocus(Qt.PopupFocusReason)
        field.selectAll()
    }
    function finish() {
        if (field.text.trim() === "") return
        close()
        renamed(field.text)
    }

    contentItem: Column {
        spacing: 12
        LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
        LayoutMirroring.childrenInherit: true
        Accessible.role: Accessible.Dialog
        Accessible.name: heading.text
        UiText {
            id: heading
            width: parent.width
            role: "heading"
            text: "Rename “" + sheet.name + "”"
        }
        Field {
            id: field
            width: parent.width
            prompt: "Workspace name"
            onAccepted: sheet.finish()
        }
        Row {
            anchors.right: parent.right
            spacing: 8
            PushButton { text: "Cancel"; onClicked: sheet.close() }
            PushButton {
                text: "Rename"
                kind: "primary"
                enabled: field.text.trim() !== ""
                onClicked: sheet.finish()
            }
        }
    }
}
