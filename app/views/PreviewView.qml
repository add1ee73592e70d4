// What resuming a workspace would do: the desktop as it will be, every window with what becomes of it, and what
// cannot come back. What is unticked is left alone this time; nothing of it is saved.
import QtQuick
import Quillo.Core

FocusScope {
    id: root
    readonly property bool narrow: width < 900
    readonly property real side: Math.round(Math.min(328 * Theme.scale, width * 0.4))

    // A slow second press on what opened the page would resume at once. Nothing that can be pressed moves while
    // the page finds out what resuming does.
    property bool armed: false
    Timer {
        running: true
        interval: 2 * Application.styleHints.mouseDoubleClickInterval
        onTriggered: root.armed = true
    }

    /// A window is picked in the map: its line is shown and chosen.
    function pick(key) {
        const row = Preview.reveal(key)
        if (row < 0) return
        list.choose(row, true)
    }
    readonly property var pickedKeys: list.chosen && list.count > 0 ? Preview.windowKeys(list.currentIndex) : []
    onPickedKeysChanged: if (pickedKeys.length === 1) map.show(pickedKeys[0])

    Item {
        id: bar
        x: 24
        width: parent.width - 48
        height: Math.max(60, back.height + 26)
        PushButton {
            id: back
            anchors.left: parent.left
            anchors.leftMargin: -12
            anchors.verticalCenter: parent.verticalCenter
            kind: "plain"
            iconName: root.LayoutMirroring.enabled ? "arrow-right" : "arrow-left"
            text: "Back without resuming · esc"
            onClicked: Ui.back()
        }
    }

    // In a wide window the map stays above the list; in a narrow one all is one page.
    Scroller {
        id: page
        anchors.top: bar.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: root.narrow
        Item { id: pageAbove; width: page.width; height: root.narrow ? above.height : 0 }
        Item { id: pageList; width: page.width; height: root.narrow ? card.height : 0 }
        Item { id: pageRest; width: page.width; height: root.narrow ? rest.height + 48 : 0 }
    }
    Item {
        id: wideAbove
        anchors.top: bar.bottom
        anchors.left: parent.left
        width: root.width - root.side - 32
        height: above.height
        visible: !root.narrow
    }
    Rectangle {
        id: card
        parent: root.narrow ? pageList : root
        anchors.left: parent.left
        anchors.leftMargin: 24
        y: root.narrow ? 0 : wideAbove.y + wideAbove.height
        width: root.narrow ? root.width - 48 : wideAbove.width - 48
        height: root.narrow ? list.contentHeight + 2 : Math.min(root.height - y - 24, list.contentHeight + 2)
        radius: 14
        color: Theme.surface
        border.width: 1
        border.color: Theme.border
        ReviewList {
            id: list
            anchors.fill: parent
            anchors.margins: 1
            contents: Preview
            selects: true
            Accessible.name: "What resuming does"
            onChosenByKey: if (root.narrow && currentItem) page.show(currentItem)
        }
    }
    Column {
        id: above
        parent: root.narrow ? pageAbove : wideAbove
        x: 24
        width: parent ? parent.width - 48 : 0

        Rectangle {
            readonly property var colors: Theme.workspaces[Preview.colorName] || Theme.workspaces["slate"]
            width: parent.width
            // In a narrow window with the button below it, which has the keyboard.
            height: root.narrow ? Math.max(180, Math.min(380, width * 0.48, root.height - bar.height - 24 - resume.y - resume.height - 12))
                                : Math.max(180, Math.min(Math.max(380, root.height * 0.5), width * 0.48, root.height - 330))
            radius: 16
            color: colors.tint
            DesktopMap {
                id: map
                anchors.fill: parent
                style: "detail"
                colorName: Preview.colorName
                source: Preview.map
                states: Preview.states
                pickable: true
                order: Preview.map ? Preview.allWindowKeys() : []
                pickedKeys: root.pickedKeys
                pointedKeys: list.hoveredRow >= 0 ? Preview.windowKeys(list.hoveredRow) : []
                onPointed: (key) => list.pointedRow = key !== "" ? Preview.rowOf(key) : -1
                onPicked: (key) => root.pick(key)
            }
        }
        Item { width: 1; height: root.narrow ? 24 : 0 }
        Item {
            id: headPlace
            width: parent.width
            height: root.narrow ? head.height : 0
        }
        Item { width: 1; height: 24 }
        Row {
            width: parent.width
            leftPadding: 8
            rightPadding: 8
            bottomPadding: 10
            spacing: 10
            UiText { id: title; role: "body-strong"; text: "What resuming does" }
            UiText {
                visible: text !== ""
                anchors.baseline: title.baseline
                role: "caption"
                color: Theme.text2
                text: Preview.leftOutText
            }
        }
    }
    Scroller {
        id: right
        anchors.right: parent.right
        anchors.rightMargin: 24 - sides
        anchors.top: bar.bottom
        anchors.topMargin: -padding
        anchors.bottom: parent.bottom
        width: root.side + 2 * sides
        visible: !root.narrow
        padding: 12  // for the rings around what is at the edge
        sides: 20
        Item { id: rightHead; width: parent.width; height: root.narrow ? 0 : head.height + 26 }
        Item { id: rightRest; width: parent.width; height: root.narrow ? 0 : rest.height + 12 }
    }

    Column {
        id: head
        parent: root.narrow ? headPlace : rightHead
        width: parent.width
        Row {
            width: parent.width
            spacing: 14
            Badge { size: 44; icon: Preview.icon; colorName: Preview.colorName }
            Column {
                width: parent.width - 44 - 14
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2
                UiText { role: "caption"; width: parent.width; text: "Before resuming"; color: Theme.text2 }
                UiText { role: "title"; width: parent.width; text: Preview.name; elide: Text.ElideRight }
            }
        }
        Item { width: 1; height: 16 }
        PushButton {
            id: resume
            width: parent.width
            large: true
            kind: "primary"
            iconName: "rotate-ccw"
            text: "Resume"
            focus: true
            enabled: Preview.canResume
            onClicked: if (root.armed) Preview.resume()
        }
        Item { width: 1; height: 26 }
        UiText { width: parent.width; role: "body-strong"; text: "This time"; bottomPadding: 6 }
        Repeater {
            model: Preview.cleanSlateLabels
            RadioRow {
                required property string modelData
                required property int index
                text: modelData
                checked: Preview.cleanSlate === index
                onPicked: if (root.armed) Preview.setCleanSlate(index)
            }
        }
        Item { width: 1; height: 16 }
        Row {
            width: parent.width
            visible: !Preview.ready
            spacing: 10
            Spinner { size: 18 }
            UiText { text: "Looking at what's open…"; color: Theme.text2 }
        }
        Column {
            id: totals
            width: parent.width
            spacing: 4
            Accessible.role: Accessible.StaticText
            Accessible.name: Preview.totals.join(". ")
            Repeater {
                model: Preview.totals
                UiText {
                    required property string modelData
                    width: totals.width
                    wrapMode: Text.Wrap
                    text: modelData
                    Accessible.ignored: true
                }
            }
        }
    }
    Column {
        id: rest
        parent: root.narrow ? pageRest : rightRest
        x: root.narrow ? 24 : 0
        y: root.narrow ? 24 : 0
        width: parent ? parent.width - 2 * x : 0
        Column {
            id: troubles
            width: parent.width
            visible: Preview.troubles.length > 0
            spacing: 6
            UiText { width: parent.width; role: "body-strong"; text: "What can't come back" }
            Repeater {
                model: Preview.troubles
                UiText {
                    required property string modelData
                    width: troubles.width
                    wrapMode: Text.Wrap
                    color: Theme.text2
                    text: modelData
                }
            }
            UiText { visible: text !== ""; role: "caption"; color: Theme.text2; text: Preview.moreTroubles }
        }
    }
}
