// Remembers what the application asked of the desktop around it.
#pragma once
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/services/Shell.hpp"

namespace quillo {

class SimulatedShell final : public Shell {
  public:
    struct Notification {
        std::string title, text;
        bool operator==(const Notification&) const = default;
    };

    struct Offer {
        std::string title, text, button;
        std::function<void()> taken;
    };

    void setActivationPolicy(ActivationPolicy policy) override { policies.push_back(policy); }
    void setAppearance(Appearance appearance) override { appearances.push_back(appearance); }
    Capability canOpenSystemSettings() const override { return settings; }
    void openSystemSettings(const std::string& page) override { openedPages.push_back(page); }
    bool showFolder(const std::filesystem::path& folder) override {
        if (hasFileManager) shownFolders.push_back(folder);
        return hasFileManager;
    }
    void notify(const std::string& title, const std::string& text) override {
        notifications.push_back({title, text});
    }
    void offer(const std::string& title, const std::string& text, const std::string& button,
               std::function<void()> taken) override {
        offers.push_back({title, text, button, std::move(taken)});
    }
    bool reducedMotion() const override { return reduced; }

    Capability settings = Capability::available();
    std::vector<ActivationPolicy> policies{};  // in order of asking, as all of these
    std::vector<Appearance> appearances{};
    std::vector<std::string> openedPages{};
    std::vector<std::filesystem::path> shownFolders{};
    std::vector<Notification> notifications{};
    std::vector<Offer> offers{};
    bool hasFileManager = true;
    bool reduced = false;
};

}  // namespace quillo
