// What each step of the introduction looks like, on a stage of 1080 x 388. It is laid out anew in whole pixels at
// every size: a stage that is merely scaled loses edges and corners between them.
import QtQuick
import Quillo.Core

Item {
    id: root
    LayoutMirroring.enabled: false  // a picture
    LayoutMirroring.childrenInherit: true
    property string step
    property real unit: 1  // pixels to one of the stage

    width: px(1080)
    height: px(388)

    function px(length) { return Math.round(length * unit) }
    function box(x, y, width, height) { return Qt.rect(px(x), px(y), px(x + width) - px(x), px(y + height) - px(y)) }

    component Box: Rectangle {
        property rect place
        x: place.x
        y: place.y
        width: place.width
        height: place.height
    }
    component Label: Text {
        color: Theme.text
        font.family: Theme.family
        textFormat: Text.PlainText
        renderType: Text.NativeRendering
        Accessible.ignored: true
    }
    component Display: Box {
        radius: height < 140 ? 5 : 9
        color: Theme.display
        border.width: 1
        border.color: Theme.displayEdge
    }

    // Windows come back to their places on two displays.
    Item {
        visible: root.step === "welcome"
        anchors.fill: parent
        Display {
            place: root.box(115, 43, 527, 302)
            color: Qt.tint(Theme.display, Theme.dark ? "#14ffffff" : "#12181e2c")
            Rectangle {  // below the line of the menu bar
                x: 1
                y: Math.max(3, root.px(8))
                width: parent.width - 2
                height: parent.height - y - 1
                radius: parent.radius - 1
                color: Theme.display
                Rectangle { width: parent.width; height: parent.radius; color: parent.color }
            }
        }
        Display { place: root.box(656, 138, 309, 207) }
        OnboardingTile { place: root.box(132, 66, 244, 236); unit: root.unit; colorName: "sky"; iconName: "globe"; name: "Web"; title: "Reading list" }
        OnboardingTile { place: root.box(388, 66, 132, 112); unit: root.unit; ghost: true }
        OnboardingTile { place: root.box(532, 66, 94, 236); unit: root.unit; ghost: true }
        OnboardingTile { place: root.box(388, 190, 132, 112); unit: root.unit; colorName: "teal"; iconName: "folder"; name: "Files"; title: "Projects" }
        OnboardingTile { place: root.box(700, 168, 152, 128); unit: root.unit; colorName: "violet"; iconName: "mail"; name: "Mail"; title: "Inbox" }
        OnboardingTile { place: root.box(800, 206, 120, 110); unit: root.unit; colorName: "lime"; iconName: "message-circle"; name: "Messages"; title: "Sam" }
        OnboardingTile { place: root.box(400, 44, 132, 112); unit: root.unit; rotation: -2.5; lifted: true; colorName: "amber"; iconName: "pencil"; name: "Notes"; title: "Monday plan" }
        OnboardingTile { place: root.box(566, 34, 94, 236); unit: root.unit; rotation: 3; lifted: true; colorName: "rose"; iconName: "music"; name: "Music"; title: "Focus" }
    }

    // Where access is switched on.
    Box {
        id: access
        visible: root.step === "access"
        place: root.box(290, 55, 500, 400)
        radius: root.px(14)
        color: Theme.surface
        border.width: 1
        border.color: Theme.borderStrong
        Shadow { level: root.unit < 0.5 ? 2 : 3; radius: access.radius }
        Row {
            x: root.px(18)
            height: root.px(48)
            spacing: root.px(9)
            Label {
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: Math.max(10, root.px(13))
                text: "Privacy & Security"
                color: Theme.text2
            }
            Icon { name: "chevron-right"; size: Math.max(10, root.px(14)); anchors.verticalCenter: parent.verticalCenter }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: Math.max(10, root.px(13))
                font.weight: Font.DemiBold
                text: "Accessibility"
            }
        }
        Rectangle { y: root.px(48); width: parent.width; height: 1; color: Theme.border }
        Repeater {
            model: [{ at: 61, long: 130 }, { at: 209, long: 168 }, { at: 269, long: 110 }]
            Item {
                required property var modelData
                y: root.px(modelData.at)
                Box { place: root.box(24, 0, 36, 36); radius: root.px(9); color: Theme.sunken }
                Box { place: root.box(74, 13, parent.modelData.long, 10); radius: height / 2; color: Theme.sunken }
                Box { place: root.box(438, 7, 38, 22); radius: height / 2; color: Theme.sunken }
            }
        }
        Box {
            place: root.box(8, 115, 484, 76)
            radius: root.px(12)
            color: Theme.surface
            border.width: 2
            border.color: Theme.focus
            AppMark { id: mark; x: root.px(16); anchors.verticalCenter: parent.verticalCenter; size: Math.max(20, root.px(40)) }
            Label {
                x: mark.x + mark.width + Math.max(6, root.px(14))
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: Math.max(11, root.px(16))
                font.weight: Font.DemiBold
                text: "Quillo"
            }
            Box {
                place: root.box(422, 25, 46, 26)
                radius: height / 2
                color: Theme.accent
                Rectangle {
                    x: parent.width - width - y
                    y: Math.max(1, root.px(2))
                    width: height
                    height: parent.height - 2 * y
                    radius: height / 2
                    color: "white"
                }
            }
        }
    }

    // Two key combinations, and what they do.
    Item {
        visible: root.step === "shortcuts"
        anchors.fill: parent
        Box {
            id: panel
            place: root.box(169, 62, 340, 264)
            radius: root.px(16)
            color: Theme.raised
            border.width: 1
            border.color: Theme.panelEdge
            Shadow { level: root.unit < 0.5 ? 2 : 3; radius: panel.radius }
            Icon { x: root.px(20); y: root.px(29) - Math.round(size / 2); name: "search"; size: Math.max(9, root.px(17)); color: Theme.text3 }
            Box { place: root.box(48, 19, 1.5, 20); color: Theme.accentText }
            Rectangle { y: root.px(57); width: parent.width; height: 1; color: Theme.border }
            Repeater {
                model: [{ icon: "briefcase", color: "teal", long: 104 }, { icon: "paintbrush.pointed", color: "rose", long: 132 },
                        { icon: "terminal", color: "amber", long: 88 }]
                Box {
                    required property var modelData
                    required property int index
                    place: root.box(8, 66 + index * 62, 324, 56)
                    radius: root.px(10)
                    color: index === 0 ? Theme.accentTint : "transparent"
                    Badge { x: root.px(12); anchors.verticalCenter: parent.verticalCenter; icon: parent.modelData.icon; colorName: parent.modelData.color; size: root.px(32) }
                    Box { place: root.box(58, 16, parent.modelData.long, 9); radius: height / 2; color: Theme.borderStrong }
                    Box { place: root.box(58, 33, parent.modelData.long * 0.7, 7); radius: height / 2; color: Theme.border }
                }
            }
        }
        Display {
            place: root.box(563, 92, 340, 204)
            OnboardingTile { place: root.box(14, 18, 150, 168); unit: root.unit; colorName: "sky"; iconName: "globe"; name: "Web" }
            OnboardingTile { place: root.box(176, 18, 150, 78); unit: root.unit; colorName: "amber"; iconName: "pencil"; name: "Notes" }
            OnboardingTile { place: root.box(176, 108, 150, 78); unit: root.unit; colorName: "teal"; iconName: "folder"; name: "Files" }
            Rectangle {
                anchors.fill: parent
                anchors.margins: -Math.max(5, root.px(9))
                radius: parent.radius - anchors.margins
                color: "transparent"
                border.width: 2
                border.color: Theme.focus
            }
        }
    }

    // The desktop as it is, of which one window stays out.
    Item {
        visible: root.step === "firstSave"
        anchors.fill: parent
        Display {
            place: root.box(230, 43, 620, 302)
            OnboardingTile { place: root.box(17, 23, 270, 256); unit: root.unit; colorName: "teal"; iconName: "globe"; name: "Web"; title: "Reading list" }
            OnboardingTile { place: root.box(302, 23, 150, 120); unit: root.unit; colorName: "teal"; iconName: "pencil"; name: "Notes"; title: "Monday plan" }
            OnboardingTile { place: root.box(302, 158, 301, 121); unit: root.unit; colorName: "teal"; iconName: "folder"; name: "Files"; title: "Projects" }
            OnboardingTile {
                place: root.box(467, 23, 136, 120)
                unit: root.unit
                ghost: true
                Icon { anchors.centerIn: parent; name: "eye-off"; size: Math.max(14, root.px(24)); color: Theme.text3 }
            }
        }
    }
}
