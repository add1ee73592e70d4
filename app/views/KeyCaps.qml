// A key combination, drawn as caps; read as its plain label.
import QtQuick
import Quillo.Core

Row {
    id: root
    property string label
    readonly property var symbols: ({ "⌃": "chevron-up", "⌥": "option", "⇧": "arrow-big-up", "⌘": "command" })
    readonly property var caps: {
        const keys = Array.from(label), all = []
        while (keys.length > 1 && symbols[keys[0]]) all.push(keys.shift())
        if (keys.length > 0) all.push(keys.join(""))
        return all
    }

    spacing: 3
    LayoutMirroring.enabled: false  // keys are written from left to right everywhere
    Accessible.role: Accessible.StaticText
    Accessible.name: label

    Repeater {
        model: root.caps
        Rectangle {
            required property string modelData
            readonly property string symbol: root.symbols[modelData] || ""
            readonly property string word: Ui.modifierWord(modelData)

            width: Math.max(height, (symbol !== "" && word === "" ? Math.round(14 * Theme.scale) : Math.ceil(words.implicitWidth)) + 12)
            height: Math.round(24 * Theme.scale)
            radius: 6
            color: Theme.sunken
            border.width: 1
            border.color: Theme.border
            Icon {
                anchors.centerIn: parent
                visible: parent.symbol !== "" && parent.word === ""
                name: visible ? parent.symbol : "x"
                size: Math.round(14 * Theme.scale)
            }
            UiText {
                id: words
                anchors.centerIn: parent
                visible: parent.symbol === "" || parent.word !== ""
                role: "caption"
                text: parent.word !== "" ? parent.word : parent.modelData
                color: Theme.text2
                Accessible.ignored: true
            }
        }
    }
}
