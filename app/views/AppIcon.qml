// An application's icon; its first letter where there is none.
import QtQuick
import Quillo.Core

Item {
    id: root
    property string identifier
    property string name
    property real size: 24

    width: size
    height: size

    Rectangle {
        anchors.fill: parent
        visible: picture.implicitWidth <= 1
        radius: root.size * 0.26
        color: Theme.workspaces["slate"].strong
        Text {
            anchors.centerIn: parent
            text: root.name ? Array.from(root.name)[0].toUpperCase() : "?"
            textFormat: Text.PlainText
            color: Theme.dark ? Theme.background : "white"
            font.family: Theme.family
            font.pixelSize: root.size * 0.5
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
    }
    Image {
        id: picture
        anchors.fill: parent
        source: root.identifier ? "image://appicon/" + encodeURIComponent(root.identifier) : ""
        sourceSize: Qt.size(root.size * 2, root.size * 2)
        asynchronous: false
        smooth: true
    }
}
