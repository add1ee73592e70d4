// Asked once where no tray shows that the program goes on without its window.
import QtQuick
import Quillo.Core

Dialog {
    width: Math.min(400 * Theme.scale, (parent ? parent.width : 440) - 40)
    title: "Keep Quillo running?"
    text: "This desktop has no tray to show that Quillo is running. While it runs, its shortcuts work, and starting it again opens this window. You can change your choice in Settings."
    otherText: "Keep Running"
    actionText: "Quit Quillo"
    actionKind: "normal"
    onOtherChosen: Closing.answer(true)
    onConfirmed: Closing.answer(false)
    onClosed: Closing.cancel()
}
