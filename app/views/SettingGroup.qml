// Rows of settings that belong together.
import QtQuick
import Quillo.Core

Rectangle {
    default property alias rows: column.data

    width: parent ? parent.width : 400
    height: column.implicitHeight + 2
    implicitHeight: height
    radius: 12
    color: Theme.surface
    border.width: 1
    border.color: Theme.border

    Column {
        id: column
        x: 1
        y: 1
        width: parent.width - 2
    }
}
