// Asked before a workspace is brought back that was not saved on this computer, or that others ask for: all that it would do, the most
// harmful first. Nothing but a click, or the keyboard on the button itself, agrees.
import QtQuick
import Quillo.Core

Dialog {
    id: root
    width: Math.min(520, (parent ? parent.width : 560) - 40)
    title: Question.title
    text: Question.text
    actionText: Question.strange ? "Resume Anyway" : "Resume"
    danger: Question.strange
    armed: false
    onConfirmed: Question.answer(true)
    onClosed: Question.answer(false)
    onAboutToShow: hold()

    // It comes up under the pointer of somebody who has just clicked twice.
    function hold() {
        armed = false
        arming.restart()
    }
    Timer {
        id: arming
        interval: 800
        onTriggered: root.armed = true
    }
    Connections {
        target: Question
        function onChanged() { root.hold() }
    }

    details: Scroller {
        readonly property real room: root.parent ? root.parent.height - 300 * Theme.scale : 200
        height: Math.min(contentHeight, Math.max(80, room))
        contentSpacing: 10
        Repeater {
            model: Question.groups
            Column {
                id: group
                required property var modelData
                width: parent.width
                spacing: 4
                UiText {
                    width: parent.width
                    role: "body-strong"
                    text: group.modelData.heading
                    wrapMode: Text.Wrap
                }
                Rectangle {
                    width: parent.width
                    height: visible ? Math.min(list.contentHeight + 12, Math.round(118 * Theme.scale)) : 0
                    visible: list.count > 0
                    radius: 8
                    color: Theme.sunken
                    ListView {
                        id: list
                        anchors.fill: parent
                        anchors.margins: 6
                        anchors.leftMargin: 10
                        anchors.rightMargin: 10
                        clip: true
                        boundsBehavior: Flickable.StopAtBounds
                        interactive: contentHeight > height
                        activeFocusOnTab: interactive
                        model: group.modelData.lines
                        delegate: UiText {
                            required property string modelData
                            width: ListView.view.width
                            text: modelData
                            wrapMode: Text.WrapAnywhere
                        }
                        Accessible.role: Accessible.List
                        Accessible.name: group.modelData.heading
                        function scroll(by) { contentY = Math.max(0, Math.min(contentHeight - height, contentY + by)) }
                        Keys.onUpPressed: scroll(-24)
                        Keys.onDownPressed: scroll(24)
                        Keys.onPressed: (event) => {
                            const way = { [Qt.Key_PageDown]: height, [Qt.Key_PageUp]: -height,
                                          [Qt.Key_Home]: -contentHeight, [Qt.Key_End]: contentHeight }[event.key]
                            if (way === undefined) return
                            scroll(way)
                            event.accepted = true
                        }
                        ScrollBar { flickable: list }
                    }
                    FocusRing {
                        shown: list.activeFocus
                        radius: 12
                    }
                }
            }
        }
    }
}
