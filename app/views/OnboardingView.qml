// The introduction: what Quillo does, what it needs, its two shortcuts, and the first workspace.
import QtQuick
import Quillo.Core

FocusScope {
    id: root
    readonly property string step: Onboarding.step
    readonly property bool refused: step === "access" && !Onboarding.granted
    focus: true

    readonly property var titles: ({ welcome: "Pick up where you left off.", access: "Allow window access.",
                                     shortcuts: "Two shortcuts to remember.", firstSave: "Save your first workspace." })
    readonly property var texts: ({
        welcome: "Save your apps and windows as a workspace, then bring them back where they were.",
        access: Ui.text("Quillo uses Accessibility to restore window positions. Your workspace data stays on this Mac."),
        shortcuts: "They work from any app. Click one to change it.",
        firstSave: "Review what's open, remove anything private, then save."
                   + Ui.text(" Open documents are saved too.")
                   + (Privacy.adaptersRefusal === "" ? Ui.text(" Tabs and folders are optional in Settings.") : "") })
    // Where sentences do not fit in a line, the first has one of its own.
    function balanced(text, fits) { return fits ? text : text.replace(". ", ".\n") }

    function proceed() {
        if (refused) Onboarding.requestAccess()
        else if (step === "firstSave") Onboarding.saveDesktop()
        else Onboarding.next()
    }
    Component.onCompleted: primary.forceActiveFocus(Qt.OtherFocusReason)
    onStepChanged: {
        primary.forceActiveFocus(Qt.OtherFocusReason)
        if (!Theme.reducedMotion) arrival.restart()
    }
    Keys.onEscapePressed: Onboarding.back()
    Keys.onReturnPressed: proceed()
    Keys.onEnterPressed: proceed()

    NumberAnimation { id: arrival; target: page; property: "opacity"; from: 0.2; to: 1; duration: 180; easing.type: Easing.OutCubic }

    // A toast stands above the dots and the way back.
    readonly property real stripHeight: foot.height
    // The button stays where it is from page to page: what may stand below it has its room on all of them, and what
    // stands above it takes its own from the picture. Only where that is too little does the button give way.
    readonly property real under: Math.max(later.implicitHeight + 10, Settings.canAllowAccess ? 28 + 2 * Theme.lineHeight("caption") : 0)
    readonly property real lowest: height - foot.height - under - primary.height
    readonly property real usual: Math.round(height * 0.54) + Theme.lineHeight("display") + 2 * Theme.lineHeight("lead") + 48
    readonly property real buttonTop: Math.round(Math.max(96 + 12 + page.implicitHeight + 16,
                                                          lowest - 0.4 * Math.max(0, lowest - usual)))

    Rectangle {
        id: wall
        width: parent.width
        height: Math.round(Math.max(96, Math.min(root.height * 0.54, page.y - 12)))
        color: Theme.accentTint
        clip: true
        OnboardingPicture {
            step: root.step
            // The wall's edge may cut the second step's picture off below the row that counts.
            unit: Math.min(wall.width / 1080, wall.height / (root.step === "access" ? 300 : 388), 1.5)
            x: Math.round((wall.width - width) / 2)
            y: root.step === "access" ? 0 : Math.round((wall.height - height) / 2)
        }
        Rectangle {
            y: parent.height - 1
            width: parent.width
            height: 1
            color: Theme.border
        }
    }

    Column {
        id: page
        readonly property real inner: Math.min(root.width - 48, 440 * Theme.scale)
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round(root.buttonTop - 16 - implicitHeight)
        width: root.width - 48
        spacing: 0

        UiText {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, parent.width)
            role: "display"
            text: root.titles[root.step]
            horizontalAlignment: Text.AlignHCenter
            wrapMode: implicitWidth > parent.width ? Text.Wrap : Text.NoWrap
            Accessible.role: Accessible.Heading
        }
        Item { width: 1; height: 12 }
        UiText {
            anchors.horizontalCenter: parent.horizontalCenter
            width: page.inner
            role: "lead"
            text: root.balanced(root.texts[root.step], whole.advanceWidth <= width)
            Accessible.name: root.texts[root.step]
            color: Theme.text2
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            TextMetrics { id: whole; font: Theme.font("lead"); text: root.texts[root.step] }
        }
        Item { width: 1; height: 20 }

        // The second step: how it stands.
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.step === "access" && Onboarding.granted
            height: visible ? implicitHeight : 0
            spacing: 8
            Icon { name: "circle-check"; size: Math.round(18 * Theme.scale); color: Theme.success; anchors.verticalCenter: parent.verticalCenter }
            UiText {
                width: Math.min(implicitWidth, page.inner)
                text: "Access is on. You can go on."
                color: Theme.success
                wrapMode: implicitWidth > page.inner ? Text.Wrap : Text.NoWrap
            }
        }

        // The third step: the recorders.
        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.step === "shortcuts"
            width: Math.min(parent.width, 520 * Theme.scale)
            height: visible ? rows.height : 0
            radius: 12
            color: Theme.surface
            border.width: 1
            border.color: Theme.border
            Column {
                id: rows
                width: parent.width
                SettingRow {
                    title: "Open workspace switcher"
                    caption: Shortcuts.switcherRefusal !== "" ? Shortcuts.switcherRefusal : "Jump between saved workspaces."
                    captionColor: Shortcuts.switcherRefusal !== "" ? Theme.danger : Theme.text2
                    ShortcutField { action: "switcher" }
                }
                SettingRow {
                    title: "Save current desktop"
                    caption: Shortcuts.saveRefusal !== "" ? Shortcuts.saveRefusal : "Snapshot every open window into a workspace."
                    captionColor: Shortcuts.saveRefusal !== "" ? Theme.danger : Theme.text2
                    separator: false
                    ShortcutField { action: "save" }
                }
            }
        }
    }

    PushButton {
        id: primary
        anchors.horizontalCenter: parent.horizontalCenter
        y: root.buttonTop
        width: Math.max(180, implicitWidth + 12)
        large: true
        kind: "primary"
        text: root.step === "firstSave" ? "Save current desktop" : root.refused ? "Open System Settings" : "Continue"
        onClicked: root.proceed()
    }
    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        y: primary.y + primary.height + (root.refused ? 16 : 10)
        UiText {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.refused
            role: "caption"
            text: "Privacy & Security → Accessibility → turn on Quillo"
            color: Theme.text2
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.refused
            topPadding: 12
            spacing: 7
            Spinner { size: Math.round(13 * Theme.scale); anchors.verticalCenter: waiting.verticalCenter }
            UiText { id: waiting; role: "caption"; text: "Waiting for access…"; color: Theme.text2 }
        }
        PushButton {
            id: later
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.step === "firstSave"
            kind: "plain"
            text: "Skip for now"
            onClicked: Onboarding.skip()
        }
    }

    Item {
        id: foot
        width: parent.width
        height: 56
        y: parent.height - height
        PushButton {
            anchors.left: parent.left
            anchors.leftMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            visible: Onboarding.place > 0
            kind: "plain"
            iconName: mirrored ? "arrow-right" : "arrow-left"
            text: "Back"
            onClicked: Onboarding.back()
        }
        Row {
            anchors.centerIn: parent
            spacing: 8
            Accessible.role: Accessible.Indicator
            Accessible.name: "Step " + (Onboarding.place + 1) + " of " + Onboarding.steps
            Repeater {
                model: Onboarding.steps
                Rectangle {
                    required property int index
                    width: index === Onboarding.place ? 20 : 7
                    height: 7
                    radius: 3.5
                    color: index === Onboarding.place ? Theme.accent : Theme.borderStrong
                    Behavior on width { NumberAnimation { duration: Theme.reducedMotion ? 0 : 140; easing.type: Easing.OutCubic } }
                }
            }
        }
    }
}
