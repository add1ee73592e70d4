// The controls: they answer to mouse and keyboard alike, and say what they are.
#include <algorithm>
#include <cmath>

#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using ControlsTest = samples::GuiTest;

double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(std::string_view one, std::string_view other) {
    const double a = luminance(Theme::color(one)), b = luminance(Theme::color(other));
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(ThemeColors, TextIsReadableInBothAppearances) {
    for (const ThemeColors& t : {lightTheme, darkTheme}) {
        const std::pair<std::string_view, std::vector<std::string_view>> inks[] = {
            {t.text, {t.background, t.surface, t.raised, t.sunken, t.warningTint, t.dangerTint}},
            {t.text2, {t.background, t.surface, t.raised, t.sunken, t.accentTint}},
            {t.text3, {t.background, t.surface, t.raised, t.sunken, t.accentTint}},
            {t.onAccent, {t.accent, t.accentHover, t.accentPress}},
            {t.accentText, {t.surface, t.accentTint}},
            {t.success, {t.surface, t.successTint}},
            {t.warning, {t.surface, t.warningTint}},
            {t.danger, {t.surface, t.raised, t.background, t.dangerTint}},
            {"#FFFFFF", {t.tooltip}},
        };
        for (const auto& [ink, papers] : inks) {
            for (const auto& paper : papers) EXPECT_GE(contrast(ink, paper), 4.5) << ink << " on " << paper;
        }
        for (const auto& paper : {t.background, t.surface}) EXPECT_GE(contrast(t.focus, paper), 3.0);
        const auto& all = t.text == lightTheme.text ? lightWorkspaceColors : darkWorkspaceColors;
        for (const WorkspaceColors& w : all) {
            EXPECT_GE(contrast(w.on, w.base), 4.5) << w.name;
            for (const auto& paper : {w.tint, t.surface}) EXPECT_GE(contrast(w.strong, paper), 4.5) << w.name;
            for (const auto& paper : {w.tileFront, w.tileBand})
                EXPECT_GE(contrast(t.text, paper), 4.5) << w.name;
            for (const auto& paper : {w.tileFront, w.tint})
                EXPECT_GE(contrast(t.text2, paper), 4.5) << w.name;
        }
    }
}

TEST(PlatformTexts, NameTheKeysOfTheSystem) {
    EXPECT_EQ(shortcutText("⌃⌥⌘S", TextVariant::onLinux), "Ctrl+Alt+Super+S");
    EXPECT_EQ(shortcutText("⌃⌥⌘S", TextVariant::onMac), "⌃⌥⌘S");
    EXPECT_EQ(shortcutText("⌘⌘", TextVariant::onLinux), "Super+⌘");
    EXPECT_EQ(platformText("Settings · ⌘,", TextVariant::onLinux), "Settings · Ctrl+,");
    EXPECT_EQ(platformText("anything", TextVariant::onLinux), "anything");
}

TEST_F(ControlsTest, SymbolsAndColoursExist) {
    for (const auto& icon : CaptureDraft::icons) {
        const QString symbol =
            theme.workspaceSymbol(QString::fromUtf8(icon.data(), static_cast<qsizetype>(icon.size())));
        EXPECT_NE(theme.glyph(symbol), "?") << icon;
    }
    EXPECT_EQ(theme.workspaceSymbol("unheard.of"), "layers");
    EXPECT_FALSE(theme.symbolFamily().isEmpty());
    for (const auto& color : Workspace::colors) EXPECT_EQ(theme.workspaceColors(color).name, color);
    EXPECT_EQ(theme.workspaceColors("pink").name, "slate");
}

}  // namespace
}  // namespace quillo
