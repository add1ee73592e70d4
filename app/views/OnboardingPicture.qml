// What each step of the introduction looks like, on a stage of 1080 x 388.
import QtQuick
import Quillo.Core

Item {
    id: root
    LayoutMirroring.enabled: false  // a picture
    LayoutMirroring.childrenInherit: true
    property int step: 0
    property bool granted: false

    component Display: Rectangle {
        radius: 9
        color: Theme.display
        border.width: 1
        border.color: Theme.displayEdge
        antialiasing: true
    }

    // Windows come back to their places on two displays.
    Item {
        visible: root.step === 0
        anchors.fill: parent
        Display { x: 115; y: 43; width: 527; height: 302
            Rectangle { x: 1; y: 1; width: parent.width - 2; height: 7; radius: 6; color: Theme.border }
        }
        Display { x: 656; y: 138; width: 309; height: 207 }
        OnboardingTile { x: 132; y: 66; width: 244; height: 236; colorName: "sky"; iconName: "globe"; name: "Web"; title: "Reading list" }
        OnboardingTile { x: 388; y: 66; width: 132; height: 112; ghost: true }
        OnboardingTile { x: 532; y: 66; width: 94; height: 236; ghost: true }
        OnboardingTile { x: 388; y: 190; width: 132; height: 112; colorName: "teal"; iconName: "folder"; name: "Files"; title: "Projects" }
        OnboardingTile { x: 700; y: 168; width: 152; height: 128; colorName: "violet"; iconName: "mail"; name: "Mail"; title: "Inbox" }
        OnboardingTile { x: 800; y: 206; width: 120; height: 110; colorName: "lime"; iconName: "message-circle"; name: "Messages"; title: "Sam" }
        OnboardingTile { x: 400; y: 44; width: 132; height: 112; rotation: -2.5; lifted: true; colorName: "amber"; iconName: "pencil"; name: "Notes"; title: "Monday plan" }
        OnboardingTile { x: 566; y: 34; width: 94; height: 236; rotation: 3; lifted: true; colorName: "rose"; iconName: "music"; name: "Music"; title: "Focus" }
    }

    // Where access is switched on, or, where nothing need be, that it is there.
    Rectangle {
        visible: root.step === 1
        x: 290
        y: 55
        width: 500
        height: 400
        radius: 14
        color: Theme.surface
        border.width: 1
        border.color: Theme.borderStrong
        Shadow { level: 3; radius: 14 }
        Row {
            x: 18
            y: 15
            spacing: 9
            UiText { text: Ui.onLinux ? "Desktop" : "Privacy & Security"; color: Theme.text2; Accessible.ignored: true }
            Icon { name: "chevron-right"; size: 14; anchors.verticalCenter: parent.verticalCenter }
            UiText { role: "body-strong"; text: Ui.onLinux ? "Window manager" : "Accessibility"; Accessible.ignored: true }
        }
        Rectangle { y: 48; width: parent.width; height: 1; color: Theme.border }
        Repeater {
            model: [{ at: 60, long: 130 }, { at: 208, long: 168 }, { at: 268, long: 110 }]
            Item {
                required property var modelData
                y: modelData.at
                width: 500
                height: 36
                Rectangle { x: 24; width: 36; height: 36; radius: 9; color: Theme.sunken }
                Rectangle { x: 74; y: 13; width: parent.modelData.long; height: 10; radius: 5; color: Theme.sunken }
                Rectangle { x: 438; y: 7; width: 38; height: 22; radius: 11; color: Theme.sunken }
            }
        }
        Rectangle {
            x: 8
            y: 115
            width: 484
            height: 76
            radius: 12
            color: Theme.surface
            border.width: 2
            border.color: Theme.focus
            antialiasing: true
            AppMark { x: 16; y: 18; size: 40 }
            UiText { x: 70; anchors.verticalCenter: parent.verticalCenter; role: "field-large"; text: "Quillo"; Accessible.ignored: true }
            Icon {
                visible: Ui.onLinux
                x: 440
                anchors.verticalCenter: parent.verticalCenter
                name: root.granted ? "circle-check" : "circle-alert"
                size: 26
                color: root.granted ? Theme.success : Theme.warning
            }
            Rectangle {
                visible: !Ui.onLinux
                x: 422
                anchors.verticalCenter: parent.verticalCenter
                width: 46
                height: 26
                radius: 13
                color: Theme.accent
                Rectangle { x: 22; y: 2; width: 22; height: 22; radius: 11; color: "white" }
            }
        }
    }

    // Two key combinations, and what they do.
    Item {
        visible: root.step === 2
        anchors.fill: parent
        Rectangle {
            x: 176
            y: 62
            width: 340
            height: 264
            radius: 16
            color: Theme.raised
            border.width: 1
            border.color: Theme.panelEdge
            Shadow { level: 3; radius: 16 }
            Icon { x: 20; y: 21; name: "search"; size: 17; color: Theme.text3 }
            Rectangle { x: 48; y: 19; width: 1.5; height: 20; color: Theme.accentText }
            Rectangle { y: 57; width: parent.width; height: 1; color: Theme.border }
            Repeater {
                model: [{ icon: "briefcase", color: "teal", long: 104 }, { icon: "paintbrush.pointed", color: "rose", long: 132 },
                        { icon: "terminal", color: "amber", long: 88 }]
                Rectangle {
                    required property var modelData
                    required property int index
                    x: 8
                    y: 66 + index * 62
                    width: 324
                    height: 56
                    radius: 10
                    color: index === 0 ? Theme.accentTint : "transparent"
                    Badge { x: 12; y: 12; icon: parent.modelData.icon; colorName: parent.modelData.color; size: 32 }
                    Rectangle { x: 58; y: 16; width: parent.modelData.long; height: 9; radius: 4.5; color: Theme.borderStrong }
                    Rectangle { x: 58; y: 33; width: parent.modelData.long * 0.7; height: 7; radius: 3.5; color: Theme.border }
                }
            }
        }
        Display { x: 570; y: 92; width: 340; height: 204
            OnboardingTile { x: 14; y: 18; width: 150; height: 168; colorName: "sky"; iconName: "globe"; name: "Web" }
            OnboardingTile { x: 176; y: 18; width: 150; height: 78; colorName: "amber"; iconName: "pencil"; name: "Notes" }
            OnboardingTile { x: 176; y: 108; width: 150; height: 78; colorName: "teal"; iconName: "folder"; name: "Files" }
            Rectangle {
                anchors.fill: parent
                anchors.margins: -9
                radius: 16
                color: "transparent"
                antialiasing: true
                border.width: 2
                border.color: Theme.focus
            }
        }
    }

    // The desktop as it is, of which one window stays out.
    Item {
        visible: root.step === 3
        anchors.fill: parent
        Display { x: 230; y: 43; width: 620; height: 302
            OnboardingTile { x: 17; y: 23; width: 270; height: 256; colorName: "teal"; iconName: "globe"; name: "Web"; title: "Reading list" }
            OnboardingTile { x: 302; y: 23; width: 150; height: 120; colorName: "teal"; iconName: "pencil"; name: "Notes"; title: "Monday plan" }
            OnboardingTile { x: 302; y: 158; width: 301; height: 121; colorName: "teal"; iconName: "folder"; name: "Files"; title: "Projects" }
            OnboardingTile { x: 467; y: 23; width: 136; height: 120; ghost: true
                Icon { anchors.centerIn: parent; name: "eye-off"; size: 24; color: Theme.text3 }
            }
        }
    }
}
