// Which applications may be asked what is open inside their windows.
import QtQuick
import Quillo.Core

Column {
    spacing: 14

    SettingGroup {
        SettingRow {
            title: "Context integrations"
            caption: Ui.text("Each integration is off by default. macOS will ask for permission the first time one is used. Window positions work without any of these.")
        }
        Repeater {
            id: adapters
            model: Privacy.adapters
            SettingRow {
                required property int index
                required property string key
                required property string name
                required property string note
                required property bool on
                required property string refusal
                title: name
                separator: index + 1 < adapters.count
                caption: refusal !== "" ? refusal : note
                captionColor: refusal !== "" ? Theme.warning : Theme.text2
                Toggle {
                    label: name
                    visible: refusal === ""
                    checked: on
                    onToggled: Privacy.setAdapter(key, !on)
                }
            }
        }
    }
    SettingNote {
        x: 1
        width: parent.width - 2
        text: Ui.text("Documents and folders that apps report themselves (TextEdit, Preview, Xcode, Ghostty…) are reopened without an integration.")
    }
}
