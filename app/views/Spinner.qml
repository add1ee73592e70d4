// Something is under way. It turns only while it is seen.
import QtQuick
import Quillo.Core

Icon {
    name: Theme.reducedMotion ? "ellipsis" : "loader-circle"
    color: Theme.accentText

    RotationAnimator on rotation {
        running: parent.visible && !Theme.reducedMotion
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
    }
}
