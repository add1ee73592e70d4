// The colours of the interface, light and dark, as #RRGGBB (or #AARRGGBB for edges that must hold on any
// backdrop). Contrasts of text are held by a test.
#pragma once
#include <array>
#include <string_view>

namespace quillo {

struct ThemeColors {
    std::string_view background;
    std::string_view surface;
    std::string_view raised;
    std::string_view sunken;
    std::string_view border;
    std::string_view borderStrong;
    std::string_view text;
    std::string_view text2;
    std::string_view text3;
    std::string_view accent;
    std::string_view accentHover;
    std::string_view accentPress;
    std::string_view onAccent;
    std::string_view accentTint;
    std::string_view accentText;
    std::string_view focus;
    std::string_view success;
    std::string_view successTint;
    std::string_view warning;
    std::string_view warningTint;
    std::string_view danger;
    std::string_view dangerTint;
    std::string_view display;
    std::string_view switchOff;
    std::string_view tooltip;
    std::string_view panelEdge;
    std::string_view displayEdge;
    std::string_view shadow;
};

/// Of one workspace colour: they mean identity only.
struct WorkspaceColors {
    std::string_view name;
    std::string_view base, on;  // solid badge and what is written on it
    std::string_view strong;    // as text or mark, on `tint` or a surface
    std::string_view tint;      // wall behind a map
    std::string_view tile, tileFront, tileBorder, tileBand, tileLanding;  // windows in a map
};

inline constexpr ThemeColors lightTheme{
    .background = "#F4F5F7",
    .surface = "#FFFFFF",
    .raised = "#FFFFFF",
    .sunken = "#EBEDF0",
    .border = "#E0E3E8",
    .borderStrong = "#C9CED6",
    .text = "#1A1D23",
    .text2 = "#525965",
    .text3 = "#646B77",
    .accent = "#2C58D0",
    .accentHover = "#244CB8",
    .accentPress = "#1E419F",
    .onAccent = "#FFFFFF",
    .accentTint = "#E8EEFC",
    .accentText = "#2450C4",
    .focus = "#5B84F0",
    .success = "#1B7A43",
    .successTint = "#E3F4EA",
    .warning = "#8A5700",
    .warningTint = "#FDF3DE",
    .danger = "#BE2D2D",
    .dangerTint = "#FCEAEA",
    .display = "#FFFFFF",
    .switchOff = "#838B98",
    .tooltip = "#23272F",
    .panelEdge = "#1F181E2C",
    .displayEdge = "#29181E2C",
    .shadow = "#141A26",
};
inline constexpr ThemeColors darkTheme{
    .background = "#16181C",
    .surface = "#1E2126",
    .raised = "#282B31",
    .sunken = "#121417",
    .border = "#31353C",
    .borderStrong = "#474C55",
    .text = "#F0F2F5",
    .text2 = "#B4BAC4",
    .text3 = "#9097A3",
    .accent = "#3763DC",
    .accentHover = "#3F6CE4",
    .accentPress = "#2F57C6",
    .onAccent = "#FFFFFF",
    .accentTint = "#222D49",
    .accentText = "#90ADFF",
    .focus = "#6F94FA",
    .success = "#5CC98A",
    .successTint = "#1B3226",
    .warning = "#EDB64B",
    .warningTint = "#372D19",
    .danger = "#FF8A85",
    .dangerTint = "#3E2325",
    .display = "#191B1F",
    .switchOff = "#6C7481",
    .tooltip = "#3A3F47",
    .panelEdge = "#21FFFFFF",
    .displayEdge = "#29FFFFFF",
    .shadow = "#000000",
};
inline constexpr std::array<WorkspaceColors, 8> lightWorkspaceColors{{
    {"coral", "#CF4029", "#FFFFFF", "#A8321C", "#FBEEEC", "#F7E0DD", "#F3CFCA", "#E5988B", "#EFC1BA",
     "#FBEEEC"},
    {"amber", "#F0AC27", "#3A2700", "#7F5200", "#FDF2DC", "#FBE6BE", "#F8D99C", "#F2B43D", "#F6CF83",
     "#FDF1DB"},
    {"lime", "#97C43A", "#1E2C02", "#48690C", "#EEF6DF", "#E0EDC4", "#CFE4A4", "#A1CA4E", "#C3DD8E",
     "#EEF5DF"},
    {"teal", "#0E8276", "#FFFFFF", "#0A655B", "#E9F4F3", "#D8EBE9", "#C3E0DD", "#7DBCB5", "#B1D7D3",
     "#EAF4F3"},
    {"sky", "#1878BE", "#FFFFFF", "#11609B", "#EAF3F9", "#DAE9F5", "#C5DDEF", "#82B6DC", "#B4D3EA",
     "#EBF3FA"},
    {"violet", "#7353D8", "#FFFFFF", "#5A3BBD", "#F2F0FB", "#E9E3F9", "#DCD4F5", "#B3A2EA", "#D1C7F2",
     "#F3F0FC"},
    {"rose", "#CE3C73", "#FFFFFF", "#A62A59", "#FBEDF2", "#F7E0E9", "#F3CEDC", "#E596B3", "#EFBFD1",
     "#FBEEF3"},
    {"slate", "#5D697A", "#FFFFFF", "#485363", "#F0F2F3", "#E5E7EA", "#D7DADE", "#A8AEB7", "#CBCFD4",
     "#F1F2F3"},
}};
inline constexpr std::array<WorkspaceColors, 8> darkWorkspaceColors{{
    {"coral", "#F07A63", "#2A0A03", "#FF9F8C", "#392D2E", "#4D322F", "#603A35", "#915045", "#6D4039",
     "#362828"},
    {"amber", "#F2B541", "#2E1F00", "#F7C566", "#353129", "#423825", "#514328", "#866830", "#5F4D2A",
     "#302B22"},
    {"lime", "#A3CF4A", "#1A2702", "#B8DD6E", "#2D342A", "#333D27", "#3D4A2A", "#5E7535", "#46552D",
     "#272E23"},
    {"teal", "#35B5A6", "#00241F", "#66CFC2", "#213437", "#20403F", "#224E4C", "#29716B", "#245754",
     "#1D2F31"},
    {"sky", "#4FA8E8", "#001F35", "#7FC2F3", "#24333F", "#263D4F", "#2B4A61", "#376A90", "#2E526D",
     "#202E39"},
    {"violet", "#9C82F2", "#150641", "#B9A6FA", "#2E2E41", "#383452", "#443D65", "#625595", "#4C4371",
     "#2A293B"},
    {"rose", "#F0709E", "#33041A", "#F896BA", "#392B36", "#4D2F3D", "#603749", "#914B66", "#6D3C51",
     "#362630"},
    {"slate", "#93A0B2", "#10161F", "#B3BECC", "#2D3238", "#363B42", "#414750", "#5D6571", "#484F59",
     "#292D32"},
}};

}  // namespace quillo
