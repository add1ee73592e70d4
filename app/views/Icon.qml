// A symbol by its name.
import QtQuick
import Quillo.Core

Text {
    property string name
    property real size: 16

    text: Theme.glyph(name)
    color: Theme.text2
    font.family: Theme.symbolFamily
    font.pixelSize: size
    width: size
    height: size
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    textFormat: Text.PlainText
    Accessible.ignored: true
}
