// The application's place in the desktop: whether it shows in the dock, how it looks, and the system's pages
// that it sends people to.
#pragma once
#include <filesystem>
#include <functional>
#include <string>

#include "WindowEngine/services/Applications.hpp"
#include "WindowEngine/services/Capability.hpp"
#include "platform/services/Appearance.hpp"

namespace quillo {

/// For the executor's thread.
class Shell {
  public:
    virtual ~Shell() = default;

    /// `regular`: in the dock or task list; `accessory`: in the menu bar or tray only.
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    virtual void setAppearance(Appearance appearance) = 0;
    /// The page of the system's settings that an address of the form "x-apple.systempreferences:..." names.
    virtual Capability canOpenSystemSettings() const = 0;
    virtual void openSystemSettings(const std::string& page) = 0;
    /// Opens it in the person's file manager; false where there is none, or this shell leaves it to another.
    virtual bool showFolder(const std::filesystem::path&) { return false; }
    /// A short message of the system's own, outside any window.
    virtual void notify(const std::string& title, const std::string& text) = 0;
    /// The same with one button, which does `taken`, for as long as no other message came.
    virtual void offer(const std::string& title, const std::string& text, const std::string& button,
                       std::function<void()> taken) = 0;
    /// The person clicked on such a message.
    std::function<void()> messageClicked;
    /// Whether the person asked the system for less motion.
    virtual bool reducedMotion() const = 0;
    /// That has changed.
    std::function<void()> reducedMotionChanged;
};

}  // namespace quillo
