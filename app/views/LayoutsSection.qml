// On which sets of displays the workspace was arranged, and what is done when one of them comes.
import QtQuick
import Quillo.Core

Column {
    id: root
    spacing: 4

    UiText { width: parent.width; role: "body-strong"; text: "Displays"; bottomPadding: 2 }
    Repeater {
        model: Layouts.sets
        Item {
            id: entry
            required property string modelData
            required property int index
            width: root.width
            height: Math.max(words.implicitHeight, Math.round(28 * Theme.scale))
            UiText {
                id: words
                anchors.left: parent.left
                anchors.right: forget.left
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                wrapMode: Text.Wrap
                text: entry.modelData
                color: entry.index === 0 ? Theme.text : Theme.text2
            }
            IconButton {
                id: forget
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                visible: entry.index > 0
                size: 28
                iconName: "x"
                tip: "Forget the layout for " + entry.modelData
                onClicked: Layouts.remove(entry.index)
            }
        }
    }
    SettingRow {
        padding: 0
        separator: false
        sub: true
        title: "Arrange windows when these displays come"
        Toggle {
            label: "Arrange windows when these displays come"
            checked: Layouts.byItself
            onToggled: Layouts.byItself = !Layouts.byItself
        }
    }
    ActionRow {
        iconName: "monitor"
        text: "Keep Layout for Attached Displays"
        enabled: Layouts.canKeep
        onClicked: Layouts.keep()
    }
}
