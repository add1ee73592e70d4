// The application's own icon.
import QtQuick
import Quillo.Core

Rectangle {
    id: root
    property real size: 40
    readonly property real unit: size / 40

    width: size
    height: size
    radius: 10 * unit
    color: Theme.accent
    antialiasing: true
    Accessible.ignored: true

    Rectangle { x: 8 * root.unit; y: 9 * root.unit; width: 14 * root.unit; height: 22 * root.unit; radius: 3 * root.unit; color: Theme.onAccent; antialiasing: true }
    Rectangle { x: 24 * root.unit; y: 9 * root.unit; width: 8 * root.unit; height: 9 * root.unit; radius: 2.5 * root.unit; color: Theme.onAccent; opacity: 0.8; antialiasing: true }
    Rectangle { x: 24 * root.unit; y: 21 * root.unit; width: 8 * root.unit; height: 10 * root.unit; radius: 2.5 * root.unit; color: Theme.onAccent; opacity: 0.5; antialiasing: true }
}
