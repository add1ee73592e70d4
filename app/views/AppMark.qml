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

    Rectangle { x: Math.round(8 * root.unit); y: Math.round(9 * root.unit); width: Math.round(14 * root.unit); height: Math.round(22 * root.unit); radius: 3 * root.unit; color: Theme.onAccent; antialiasing: true }
    Rectangle { x: Math.round(24 * root.unit); y: Math.round(9 * root.unit); width: Math.round(8 * root.unit); height: Math.round(9 * root.unit); radius: 2.5 * root.unit; color: Theme.onAccent; opacity: 0.8; antialiasing: true }
    Rectangle { x: Math.round(24 * root.unit); y: Math.round(21 * root.unit); width: Math.round(8 * root.unit); height: Math.round(10 * root.unit); radius: 2.5 * root.unit; color: Theme.onAccent; opacity: 0.5; antialiasing: true }
}
