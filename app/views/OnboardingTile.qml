// A window in a picture of the introduction; a small one shows its application alone.
import QtQuick
import Quillo.Core

Item {
    id: root
    property rect place
    property real unit: 1
    property string colorName: "sky"
    property string iconName: "app-window"
    property string name
    property string title
    property bool lifted: false  // in the air, on its way to its place
    property bool ghost: false   // the place that it goes to
    readonly property bool small: unit < 0.7
    readonly property real band: Math.round(27 * unit)
    readonly property real corner: small ? 4 : 7
    readonly property var colors: Theme.workspaces[colorName]

    x: place.x
    y: place.y
    width: place.width
    height: place.height
    Accessible.ignored: true

    component Label: Text {
        property OnboardingTile tile
        visible: !tile.ghost && !tile.small
        font.family: Theme.family
        font.pixelSize: Math.max(10, Math.round(11 * tile.unit))
        textFormat: Text.PlainText
        renderType: tile.lifted ? Text.QtRendering : Text.NativeRendering  // the latter does not turn
        Accessible.ignored: true
    }

    Shadow { visible: root.lifted; level: 2; radius: root.corner }
    Rectangle {  // cut out of what lies behind
        visible: !root.ghost && !root.lifted
        anchors.fill: parent
        anchors.margins: -2
        radius: root.corner + 2
        color: Theme.display
    }
    Rectangle {
        visible: !root.ghost
        anchors.fill: parent
        radius: root.corner
        antialiasing: true
        color: root.small ? root.colors.tileFront : root.colors.tileBand
        border.width: 1
        border.color: root.colors.tileBorder
    }
    Loader {  // a dashed edge
        anchors.fill: parent
        active: root.ghost
        sourceComponent: Canvas {
            readonly property color ink: Theme.text3
            readonly property real corner: root.corner
            onInkChanged: requestPaint()
            onCornerChanged: requestPaint()
            onPaint: {
                const context = getContext("2d")
                context.reset()
                context.strokeStyle = ink
                context.lineWidth = 1
                context.globalAlpha = 0.7
                context.setLineDash([4, 3])
                context.roundedRect(0.5, 0.5, width - 1, height - 1, corner, corner)
                context.stroke()
            }
        }
    }
    Rectangle {
        visible: !root.ghost && !root.small
        antialiasing: true
        x: 1
        y: root.band
        width: parent.width - 2
        height: parent.height - root.band - 1
        radius: root.corner - 1
        color: root.colors.tileFront
        Rectangle { width: parent.width; height: root.corner; color: parent.color; antialiasing: true }
    }
    Rectangle {
        visible: !root.ghost
        x: root.small ? Math.round((parent.width - width) / 2) : Math.round(8 * root.unit)
        y: Math.round(((root.small ? parent.height : root.band) - height) / 2)
        width: root.small ? Math.min(16, Math.round(0.6 * Math.min(parent.width, parent.height))) : Math.round(16 * root.unit)
        height: width
        radius: width / 4
        antialiasing: true
        color: root.colors.base
        Icon { anchors.centerIn: parent; name: root.iconName; size: Math.round(parent.width * 0.7); color: root.colors.on }
    }
    Label {
        tile: root
        x: Math.round(30 * root.unit)
        y: Math.round((root.band - height) / 2)
        font.weight: Font.DemiBold
        text: root.name
        color: Theme.text
    }
    Label {
        tile: root
        x: Math.round(9 * root.unit)
        y: root.band + Math.round(7 * root.unit)
        text: root.title
        color: Theme.text2
    }
}
