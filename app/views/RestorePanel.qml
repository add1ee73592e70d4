// A restore while it happens: the desktop as it fills, line by line what came back, and at the end what did not.
import QtQuick
import Quillo.Core

PanelFrame {
    id: root
    readonly property bool over: !Restore.running
    // What lines will need is there from the beginning, so that nothing moves under the pointer while they arrive.
    readonly property real reserved: Math.max(36, title.height + words.spacing + 2 * Theme.lineHeight("caption")) + 32
                                     + Math.min(Restore.expectedRows * Math.round(34 * Theme.scale) + 16, list.most)

    bodyHeight: column.implicitHeight + 2
    Accessible.name: Restore.title
    Keys.onEscapePressed: Restore.close()

    Column {
        id: column
        x: 1
        y: 1
        width: parent.width - 2

        Item {
            id: header
            width: parent.width
            height: Math.max(36, words.height) + 32
            Badge {
                anchors.left: parent.left
                anchors.leftMargin: 15
                y: 16
                size: 36
                visible: !root.over
                icon: Restore.icon
                colorName: Restore.colorName
            }
            Rectangle {
                anchors.left: parent.left
                anchors.leftMargin: 15
                y: 16
                width: 36
                height: 36
                radius: 18
                visible: root.over
                color: Restore.clean ? Theme.successTint : Theme.warningTint
                Icon {
                    anchors.centerIn: parent
                    name: Restore.clean ? "check" : "triangle-alert"
                    size: 18
                    color: Restore.clean ? Theme.success : Theme.warning
                }
            }
            Column {
                id: words
                anchors.left: parent.left
                anchors.leftMargin: 63
                y: 16
                width: parent.width - 63 - 52
                spacing: 2
                UiText {
                    id: title
                    width: parent.width
                    role: "heading"
                    // A name in another direction does not turn the sentence around.
                    text: root.LayoutMirroring.enabled ? Restore.title : "\u200e" + Restore.title
                    Accessible.name: Restore.title
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                }
                UiText {
                    width: parent.width
                    role: "caption"
                    text: Restore.subtitle.replace(/(\d) /g, "$1\u00a0")  // a number stays with its noun
                    Accessible.name: Restore.subtitle
                    color: Theme.text2
                    wrapMode: Text.Wrap
                }
            }
            IconButton {
                anchors.right: parent.right
                anchors.rightMargin: 11
                y: 14
                size: 28
                iconName: "x"
                tip: root.over ? "Close" : "Stop resuming"
                onClicked: Restore.close()
            }
        }

        DesktopMap {
            x: 15
            width: parent.width - 30
            height: 152
            style: "restore"
            wallRadius: 14
            colorName: Restore.colorName
            source: Restore.source
            states: Restore.states
        }
        Item {
            width: parent.width
            height: 14
            Rectangle {
                x: 15
                y: 11
                width: parent.width - 30
                height: 2
                radius: 1
                visible: !root.over
                color: Theme.sunken
                Accessible.role: Accessible.ProgressBar
                Accessible.name: "Windows that are back: " + Math.round(Restore.progress * 100) + " %"
                Rectangle {
                    anchors.left: parent.left
                    width: parent.width * Restore.progress
                    height: 2
                    radius: 1
                    color: Theme.accent
                }
            }
        }
        Item {
            id: filter
            width: parent.width
            visible: root.over && Restore.troubleCount > 0 && Restore.rowCount > 8
            height: visible ? choice.height + 8 : 0
            Segmented {
                id: choice
                anchors.left: parent.left
                anchors.leftMargin: 15
                y: 4
                mini: true
                label: "Lines shown"
                model: ["Not back · " + Restore.troubleCount, "All · " + Restore.rowCount]
                current: Restore.onlyTrouble ? 0 : 1
                onPicked: (index) => Restore.onlyTrouble = index === 0
            }
        }

        ListView {
            id: list
            width: parent.width
            height: Math.max(tallest, root.reserved - header.height - filter.height, 0)
            // Only what came of it makes it taller, and nothing makes it smaller again.
            readonly property real wanted: root.over && count > 0 ? Math.min(contentHeight + topMargin + bottomMargin, most) : 0
            property real tallest: 0
            // Rows are measured as they come into view.
            onWantedChanged: Qt.callLater(() => { if (list) list.tallest = Math.max(list.tallest, list.wanted) })
            // Eight rows with their reasons, as far as the screen has room for them.
            readonly property real most: Math.min(Math.round(8 * 52 * Theme.scale) + 16, Math.max(120, Screen.desktopAvailableHeight - 300))
            topMargin: 6
            bottomMargin: 10
            clip: true
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            model: Restore.rows
            delegate: RestoreItem { width: list.width }
            footer: Item {
                width: list.width
                height: rest.text === "" ? 0 : rest.implicitHeight
                UiText {
                    id: rest
                    leftPadding: 45
                    topPadding: 8
                    bottomPadding: 4
                    text: Restore.more
                    color: Theme.text2
                }
            }
            Accessible.role: Accessible.List
            Accessible.name: "What has been restored"

            // What is wrong is read from the beginning.
            readonly property bool sorted: root.over && Restore.onlyTrouble
            onSortedChanged: Qt.callLater(positionViewAtBeginning)
            // It follows the newest row, unless somebody reads.
            onCountChanged: if (!reader.hovered && Restore.running) Qt.callLater(positionViewAtEnd)
            HoverHandler { id: reader }
            ScrollBar { flickable: list }
        }
        Item {
            id: back
            width: parent.width
            // Its room is there from the beginning, too.
            height: Restore.undoable || Restore.closing !== "" ? steps.height + 14 : 6
            Column {
                id: steps
                x: 15
                y: 4
                width: parent.width - 30
                spacing: 6
                Row {
                    width: parent.width
                    visible: Restore.awaited !== ""
                    spacing: 8
                    UiText {
                        anchors.verticalCenter: parent.verticalCenter
                        width: parent.width - stop.width - parent.spacing
                        role: "caption"
                        text: Restore.awaited
                        color: Theme.text2
                        wrapMode: Text.Wrap
                    }
                    PushButton {
                        id: stop
                        compact: true
                        text: "Stop waiting"
                        onClicked: Restore.stopWaiting()
                    }
                }
                PushButton {
                    width: Math.min(implicitWidth, parent.width)
                    visible: Restore.undoable
                    opacity: Restore.canPutBack ? 1 : 0
                    enabled: Restore.canPutBack
                    Accessible.ignored: !Restore.canPutBack
                    compact: true
                    iconName: "undo-2"
                    text: "Put everything back as it was"
                    onClicked: Restore.putBack()
                }
                PushButton {
                    width: Math.min(implicitWidth, parent.width)
                    visible: Restore.closing !== ""
                    compact: true
                    text: Restore.closing
                    onClicked: Restore.closeLaunched()
                }
                UiText {
                    width: parent.width
                    visible: text !== ""
                    role: "caption"
                    text: Restore.putBackLimits
                    color: Theme.text2
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
