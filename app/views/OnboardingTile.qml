// A window in a picture of the introduction.
import QtQuick
import Quillo.Core

Item {
    id: root
    property string colorName: "sky"
    property string iconName: "app-window"
    property string name
    property string title
    property bool lifted: false  // in the air, on its way to its place
    property bool ghost: false   // the place that it goes to
    readonly property var colors: Theme.workspaces[colorName]
    Accessible.ignored: true

    Shadow { visible: root.lifted; level: 2; radius: 7 }
    Rectangle {
        anchors.fill: parent
        radius: 7
        antialiasing: true
        color: root.ghost ? "transparent" : root.colors.tileBand
        border.width: root.ghost ? 0 : 1
        border.color: root.colors.tileBorder
    }
    Loader {  // a dashed edge
        anchors.fill: parent
        active: root.ghost
        sourceComponent: Canvas {
            readonly property color ink: Theme.text3
            onInkChanged: requestPaint()
            onPaint: {
                const context = getContext("2d")
                context.reset()
                context.strokeStyle = ink
                context.lineWidth = 1
                context.globalAlpha = 0.7
                context.setLineDash([4, 3])
                context.roundedRect(0.5, 0.5, width - 1, height - 1, 7, 7)
                context.stroke()
            }
        }
    }
    Rectangle {
        visible: !root.ghost
        antialiasing: true
        x: 1
        y: 27
        width: parent.width - 2
        height: parent.height - 28
        radius: 6
        color: root.colors.tileFront
        Rectangle { width: parent.width; height: 7; color: parent.color; antialiasing: true }
    }
    Rectangle {
        visible: !root.ghost
        x: 8
        y: 6
        width: 16
        height: 16
        radius: 4
        antialiasing: true
        color: root.colors.base
        Icon { anchors.centerIn: parent; name: root.iconName; size: 11; color: root.colors.on }
    }
    UiText {
        visible: !root.ghost
        x: 30
        y: 7
        font: Theme.font("map-label")
        text: root.name
        renderType: Text.QtRendering
        Accessible.ignored: true
    }
    UiText {
        visible: !root.ghost
        x: 9
        y: 34
        font.pixelSize: 11
        font.family: Theme.family
        text: root.title
        color: Theme.text2
        renderType: Text.QtRendering
        Accessible.ignored: true
    }
}
