// The applications of the workspace in the detail, in two columns where there is room, and how many are left out.
import QtQuick
import Quillo.Core

Grid {
    id: root
    columns: width < 480 * Theme.scale ? 1 : 2
    columnSpacing: 40

    Repeater {
        model: Detail.apps
        Item {
            required property var modelData
            width: (root.width - (root.columns - 1) * root.columnSpacing) / root.columns
            height: Math.round(46 * Theme.scale)
            Accessible.role: Accessible.ListItem
            Accessible.name: modelData.name + ", " + modelData.what

            AppIcon {
                id: icon
                anchors.left: parent.left
                anchors.leftMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                identifier: modelData.identifier
                name: modelData.name
                size: 26
            }
            UiText {
                anchors.left: icon.right
                anchors.leftMargin: 11
                anchors.right: what.left
                anchors.rightMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                role: "body-medium"
                text: modelData.name
                Accessible.ignored: true
            }
            UiText {
                id: what
                anchors.right: parent.right
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, parent.width * 0.6)
                role: "caption"
                text: modelData.what
                color: Theme.text2
                Accessible.ignored: true
            }
        }
    }
    UiText {
        visible: text !== ""
        leftPadding: 8
        topPadding: 8
        text: Detail.moreApps
        color: Theme.text2
    }
}
