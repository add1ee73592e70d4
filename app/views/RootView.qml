// The main window: one page at a time, and the message of the moment over it.
import QtQuick
import QtQuick.Templates as T
import Quillo.Core

Rectangle {
    id: root
    color: Theme.background
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    function fileOf(page) {
        return { onboarding: "OnboardingView.qml", review: "ReviewView.qml", settings: "SettingsView.qml",
                 preview: "PreviewView.qml", detail: "DetailView.qml", library: "LibraryView.qml" }[page]
    }

    Shortcut { sequence: "Ctrl+,"; enabled: Ui.page !== "onboarding"; onActivated: Ui.openSettings() }
    Shortcut { sequences: [StandardKey.Save]; enabled: Ui.page === "library" || Ui.page === "detail"; onActivated: Ui.beginCapture() }
    Shortcut { sequence: "Ctrl+I"; enabled: Ui.page === "library"; onActivated: Ui.importWorkspace() }
    Shortcut {
        sequences: [StandardKey.Find]
        enabled: Ui.page === "library"
        onActivated: if (page.item && page.item.focusSearch) page.item.focusSearch()
    }
    Shortcut { sequences: [StandardKey.Quit]; enabled: Closing.canQuit; onActivated: Closing.quit() }
    // What else comes within a page.
    readonly property string content: [Ui.detailId, Onboarding.step, Review.present].join()
    onContentChanged: Presses.pageCame()
    Keys.onEscapePressed: Ui.leave()

    // A question that came while another program had the keyboard has nobody to give it back to: the page has it.
    readonly property Item keyboard: Window.activeFocusItem
    readonly property bool lost: Window.active && (keyboard === null || keyboard === Window.contentItem)
    onLostChanged: if (lost) Qt.callLater(() => { if (lost) page.forceActiveFocus(Qt.PopupFocusReason) })

    Loader {
        id: page
        anchors.fill: parent
        focus: true
        source: root.fileOf(Ui.page)
        property string before
        onLoaded: {
            item.focus = true
            if (before === "preview" && item.afterPreview) item.afterPreview()
            before = Ui.page
            Presses.pageCame()
            if (Theme.reducedMotion) return
            arrival.start()
        }
        ParallelAnimation {
            id: arrival
            NumberAnimation { target: page; property: "opacity"; from: 0.3; to: 1; duration: 140; easing.type: Easing.OutCubic }
        }
    }
    // A question over whatever page there is.
    component Asking: Loader {
        property bool wanted: false
        readonly property bool asked: wanted && T.Overlay.overlay !== null  // in a window by now
        active: false
        function follow() {
            if (asked) active = true
            if (item) item.visible = asked
        }
        onAskedChanged: follow()
        Component.onCompleted: follow()
    }
    Asking {
        id: question
        wanted: Question.shown
        sourceComponent: ResumeDialog { parent: question.T.Overlay.overlay }
    }
    Asking {
        id: closing
        wanted: Closing.asked
        sourceComponent: ClosingDialog { parent: closing.T.Overlay.overlay }
    }
    Asking {
        id: twins
        wanted: Twins.shown
        sourceComponent: TwinsDialog { parent: twins.T.Overlay.overlay }
    }
    Toast {
        anchors.horizontalCenter: parent.horizontalCenter
        // At the foot of a page; where the new line of a list may stand there, in the bar above it.
        y: kind === "done" && page.item && page.item.toastInBar ? 10
           : parent.height - height - (page.item && page.item.stripHeight ? page.item.stripHeight + 16 : 28)
        shown: Ui.toast !== ""
        text: ""
        readonly property string latest: Ui.toast
        onLatestChanged: follow()
        onUndone: Ui.undoToast()
        onDismissed: Ui.dismissToast()
        Component.onCompleted: follow()
        function follow() {  // it stays while it fades
            if (latest === "") return
            kind = Ui.toastKind
            undoes = Ui.toastUndoes
            text = latest
        }
    }
}
