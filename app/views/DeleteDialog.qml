// Asked before a workspace is deleted.
import QtQuick

Dialog {
    property string name
    title: "Delete “" + name + "”?"
    text: "This removes the saved workspace. Your apps and files are not affected."
    actionText: "Delete Workspace"
    danger: true
}
