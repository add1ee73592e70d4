// Hands every call on to another service: a fault test overrides the one it needs.
#pragma once
#include <utility>

#include "WindowEngine/services/Applications.hpp"

namespace quillo {

class ForwardingApplications : public Applications {
  public:
    explicit ForwardingApplications(Applications& target) : target_(target) {}

    std::vector<RunningApplication> running() override { return target_.running(); }
    std::optional<RunningApplication> running(ProcessID pid) override { return target_.running(pid); }
    std::optional<RunningApplication> running(std::string_view bundleIdentifier) override {
        return target_.running(bundleIdentifier);
    }
    std::vector<std::string> ownIdentifiers() override { return target_.ownIdentifiers(); }
    std::set<std::string> neverCaptured() override { return target_.neverCaptured(); }
    std::set<WindowNumber> windowsOfAny(const std::set<std::string>& identifiers) override {
        return target_.windowsOfAny(identifiers);
    }
    std::int64_t remoteWindows() override { return target_.remoteWindows(); }
    std::optional<std::int64_t> shells(std::string_view bundleIdentifier) override {
        return target_.shells(bundleIdentifier);
    }
    std::optional<Url> location(std::string_view bundleIdentifier) override {
        return target_.location(bundleIdentifier);
    }
    std::optional<std::string> identifierAt(const Url& location) override {
        return target_.identifierAt(location);
    }
    std::optional<std::string> name(std::string_view bundleIdentifier) override {
        return target_.name(bundleIdentifier);
    }
    std::string notInstalled() override { return target_.notInstalled(); }
    std::vector<InstalledApplication> installed() override { return target_.installed(); }
    Task<Result<void>> launch(Url location, std::vector<Url> documents) override {
        return target_.launch(std::move(location), std::move(documents));
    }
    bool documentsTravelWithLaunch() override { return target_.documentsTravelWithLaunch(); }
    DocumentHanding handing(std::string_view bundleIdentifier, std::span<const Url> documents) override {
        return target_.handing(bundleIdentifier, documents);
    }
    Task<Result<void>> open(std::string bundleIdentifier, std::vector<Url> documents) override {
        return target_.open(std::move(bundleIdentifier), std::move(documents));
    }
    Result<Url> openable(std::string_view bundleIdentifier, const Url& document) override {
        return target_.openable(bundleIdentifier, document);
    }
    Task<Result<void>> requestWindow(std::string bundleIdentifier) override {
        return target_.requestWindow(std::move(bundleIdentifier));
    }
    bool hide(std::string_view bundleIdentifier) override { return target_.hide(bundleIdentifier); }
    bool show(std::string_view bundleIdentifier) override { return target_.show(bundleIdentifier); }
    bool terminate(std::string_view bundleIdentifier) override { return target_.terminate(bundleIdentifier); }
    std::optional<ProcessID> serviceProcess(std::string_view bundleIdentifier) override {
        return target_.serviceProcess(bundleIdentifier);
    }
    Capability hiding() override { return target_.hiding(); }
    Capability quitting() override { return target_.quitting(); }
    Capability openingWindows(std::string_view bundleIdentifier) override {
        return target_.openingWindows(bundleIdentifier);
    }
    Task<Result<void>> openWindow(std::string bundleIdentifier) override {
        return target_.openWindow(std::move(bundleIdentifier));
    }

  private:
    Applications& target_;
};

}  // namespace quillo
