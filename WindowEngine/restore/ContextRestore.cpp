#include "WindowEngine/restore/ContextRestore.hpp"

#include <algorithm>

namespace quillo::Restore {
namespace {

using namespace std::chrono_literals;

constexpr Duration ownWindowsPatience = 5s;

void report(ApplicationRestore& restore, const AdapterRestoreResult& result) {
    restore.opensMore |= result.opened > 0;
    if (result.opened > 0) restore.add(RestoreReport::opened{result.opened});
    for (const std::string& failure : result.failures) restore.add(RestoreReport::failed{failure});
}

Task<void> restoreThrough(const ContextAdapter& adapter, ApplicationRestore& restore) {
    const std::string& identifier = restore.application.bundleIdentifier;
    if (restore.launched) {
        const Duration patience = std::min(ownWindowsPatience, restore.deadline - restore.now());
        co_await restore.presence.wait(identifier, {patience, toDuration(restore.options.settleDelay)});
        if (auto trouble = co_await adapter.awaitOwnWindows(restore.desktop, identifier)) {
            restore.add(RestoreReport::failed{*std::move(trouble)});
            co_return;
        }
    }
    // Windows on other desktops become known: what they show is not opened again.
    if (const auto running = restore.desktop.platform.applications.running(identifier))
        Accessibility::windows(restore.desktop, running->pid, true);
    AdapterCaptureResult now = co_await adapter.capture(restore.desktop, identifier);
    if (now.failure) now.context.reset();
    co_await checkpoint();
    report(restore, co_await adapter.restore(restore.desktop, *restore.application.context,
                                             std::move(now.context), identifier));
    co_await checkpoint();
}

}  // namespace

const ContextAdapter* contextAdapter(const Platform& platform, const ApplicationSnapshot& application,
                                     const std::set<std::string>& enabledAdapters) {
    if (!application.context || !enabledAdapters.contains(application.context->adapter)) return nullptr;
    const ContextAdapter* adapter = Adapters::named(application.context->adapter);
    const bool handles = adapter && adapter->bundleIdentifiers().contains(application.bundleIdentifier);
    return handles && adapter->available(platform) ? adapter : nullptr;
}

std::string unavailableIntegration(const Platform& platform, const AppContext& context) {
    // The identifier itself comes from a file: it is not repeated.
    const ContextAdapter* adapter = Adapters::named(context.adapter);
    return (adapter ? adapter->name(platform) : "The saved") + " integration is disabled or unavailable";
}

std::int64_t bareWindows(const Platform& platform, const ApplicationSnapshot& application,
                         const std::set<std::string>& enabledAdapters) {
    const std::int64_t bare = std::ranges::count_if(
        application.windows, [](const WindowSnapshot& window) { return !SavedDocuments::isIn(window); });
    if (!contextAdapter(platform, application, enabledAdapters)) return bare;
    const std::int64_t opened = std::ranges::count_if(
        application.context->windows, [](const ContextWindow& window) { return !window.urls.empty(); });
    return std::max<std::int64_t>(bare - opened, 0);
}

Task<void> restoreContext(ApplicationRestore& restore) {
    if (!restore.application.context) co_return;
    const ContextAdapter* adapter =
        contextAdapter(restore.desktop.platform, restore.application, restore.options.enabledAdapters);
    if (adapter) {
        co_await restoreThrough(*adapter, restore);
    } else {
        restore.add(RestoreReport::note{
            unavailableIntegration(restore.desktop.platform, *restore.application.context)});
    }
}

}  // namespace quillo::Restore
