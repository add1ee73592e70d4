// Asked where identical screens cannot be told apart; each of them shows its number meanwhile.
import QtQuick
import Quillo.Core

Dialog {
    id: root
    property int serial: 0
    property int chosen: 0
    width: Math.min(460, (parent ? parent.width : 500) - 40)
    title: "Which screen is it?"
    text: Twins.text
    actionText: "Resume"
    onAboutToShow: {
        serial = Twins.serial
        chosen = 0
    }
    onConfirmed: Twins.answer(chosen)
    onClosed: Twins.cancel(serial)

    details: Column {
        Repeater {
            model: Twins.choices
            RadioRow {
                required property string modelData
                required property int index
                text: modelData
                checked: root.chosen === index
                onPicked: root.chosen = index
            }
        }
    }
}
