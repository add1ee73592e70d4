// Text in one of the interface's roles; one line with an ellipsis unless it wraps.
import QtQuick
import Quillo.Core

Text {
    property string role: "body"

    color: Theme.text
    font: Theme.font(role)
    renderType: Text.NativeRendering
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft  // names of every script begin where the layout begins
    elide: wrapMode === Text.NoWrap ? Text.ElideRight : Text.ElideNone
    lineHeightMode: wrapMode === Text.NoWrap ? Text.ProportionalHeight : Text.FixedHeight
    lineHeight: wrapMode === Text.NoWrap ? 1 : Theme.lineHeight(role)
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
