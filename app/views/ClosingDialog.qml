// Asked once where no tray shows that the program goes on without its window.
import QtQuick
import Quillo.Core

Dialog {
    title: "Keep Quillo running?"
    text: "This desktop shows no tray: with its window closed, nothing is seen of Quillo. Its shortcuts go on working, and starting it again opens the window. Settings keep your choice."
    cancelText: "Keep Running"
    actionText: "Quit Quillo"
    actionKind: "normal"
    onDeclined: Closing.answer(true)
    onConfirmed: Closing.answer(false)
    onClosed: Closing.cancel()
}
