// The application's own icon.
import QtQuick
import QtQuick.Window

Image {
    property real size: 40
    readonly property int pixels: Math.ceil(size * Screen.devicePixelRatio)

    width: size
    height: size
    source: "qrc:/icons/app.quillo.Quillo-256.png"
    sourceSize: Qt.size(pixels, pixels)
    Accessible.ignored: true
}
