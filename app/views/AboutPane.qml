// Which version this is, and what keeps it up to date.
import QtQuick
import Quillo.Core

Column {
    spacing: 14

    Row {
        width: parent.width
        spacing: 16
        AppMark { size: 64 }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            UiText { role: "title"; text: "Quillo" }
            UiText { text: "Version " + Settings.version; color: Theme.text2 }
        }
    }
    SettingGroup {
        SettingRow {
            readonly property bool ready: Settings.readyVersion !== ""
            separator: false
            title: ready ? "Relaunch to update · " + Settings.readyVersion
                   : Settings.availableVersion !== "" ? "Update available · " + Settings.availableVersion : "Updates"
            caption: Settings.updatesRefusal !== "" ? Settings.updatesRefusal
                     : !ready ? "" : Settings.relaunchRefusal !== "" ? Settings.relaunchRefusal
                     : "The update is ready. It will also install when you quit Quillo.\nRelaunch now, or keep working and quit later."
            PushButton {
                compact: true
                visible: Settings.updatesRefusal === ""
                text: parent.parent.ready ? "Relaunch to Update" : "Check for Updates…"
                kind: parent.parent.ready ? "primary" : "normal"
                enabled: parent.parent.ready ? Settings.relaunchRefusal === "" : Settings.canCheckForUpdates
                onClicked: parent.parent.ready ? Settings.relaunch() : Settings.checkForUpdates()
            }
        }
    }
    SettingNote {
        x: 1
        width: parent.width - 2
        text: Closing.withoutTray ? Closing.note
              : Ui.text("Updates download in the background and install when you quit Quillo. Closing a window keeps Quillo running in the menu bar.")
    }
}
