// Says where the keyboard is.
import QtQuick
import Quillo.Core

Rectangle {
    property bool shown: false
    property real gap: 2

    visible: shown
    anchors.fill: parent
    anchors.margins: -gap - 2
    color: "transparent"
    border.color: Theme.focus
    border.width: 2
}
