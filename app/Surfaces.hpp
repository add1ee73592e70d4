// What the interface does for the model: windows, floating panels, file dialogs. The model asks through this
// seam only, so it runs without any view.
#pragma once
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "WindowEngine/support/Task.hpp"

namespace quillo {

/// A floating panel; at most one of each kind is open.
enum class PanelID : std::uint8_t { switcher, restore };
enum class PanelAnchor : std::uint8_t { center, bottomTrailing };

struct PanelPlace {
    int width = 0;  // points
    PanelAnchor anchor = PanelAnchor::center;
    /// It takes the keyboard: the person has asked for just this.
    bool activates = false;
    /// Above the windows of all applications; else only above the main window.
    bool staysOnTop = true;

    bool operator==(const PanelPlace&) const = default;
};
inline constexpr PanelPlace switcherPlace{.width = 480, .anchor = PanelAnchor::center, .activates = true};

/// Ends an observation when it goes.
class SurfaceObserver {
  public:
    virtual ~SurfaceObserver() = default;
};

/// For the executor's thread.
class Surfaces {
  public:
    virtual ~Surfaces() = default;

    /// Lets the main window join the active desktop, brings it to the front and gives it the keyboard; false
    /// when there is none.
    virtual bool bringMainWindowForward() = 0;

    virtual void showPanel(PanelID panel, PanelPlace place) = 0;
    /// A panel that is not open is left alone.
    virtual void closePanel(PanelID panel) = 0;
    virtual bool panelVisible(PanelID panel) const = 0;
    /// Whether somebody reads it or works in it: the pointer or the keyboard is there.
    virtual bool panelInUse(PanelID /*panel*/) const { return false; }
    /// The main window goes behind all other windows, where there is one. It stays open.
    virtual void stepAside() {}

    /// Where to write a JSON file, absolute; absent when the person cancelled. The dialog has asked about
    /// replacing a file.
    virtual Task<std::optional<std::filesystem::path>> fileToWrite(std::string proposedName) = 0;
    /// Which JSON file to read, absolute; absent when the person cancelled.
    virtual Task<std::optional<std::filesystem::path>> fileToRead() = 0;

    /// A folder to write several files into, absolute; absent when the person cancelled.
    virtual Task<std::optional<std::filesystem::path>> folderToWrite() = 0;

    /// Any part of the program, or a second start of it, may ask for the main window.
    virtual std::unique_ptr<SurfaceObserver> observeOpenMainWindow(std::function<void()> asked) = 0;
};

}  // namespace quillo
