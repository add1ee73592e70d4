#include "WindowEngine/records/WorkspaceMigration.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/records/ChromiumURLCodec.hpp"
#include "WindowEngine/records/NativeTabs.hpp"

namespace quillo::WorkspaceCoding {
namespace {

/// Files of earlier versions hold addresses that were run together with new tabs, and pages of the browser's
/// own that cannot be opened again.
void decodeAddresses(AppContext& context) {
    for (ContextWindow& window : context.windows) {
        std::vector<std::string> fields;
        for (const Url& url : window.urls) fields.push_back(url.string());
        window.urls = ChromiumURLCodec::decode(fields);
    }
}

/// Where applications are menu entries, none shows its tabs as windows: windows on top of each other are
/// windows.
bool showsTabsAsWindows(const WorkspaceSnapshot& captured) {
    return std::ranges::none_of(captured.applications, [](const ApplicationSnapshot& application) {
        return application.applicationURL && application.applicationURL->string().ends_with(".desktop");
    });
}

}  // namespace

Result<void> checkSchemaVersion(std::int64_t version) {
    if (version == 1 || version == Workspace::currentSchemaVersion) return {};
    return fail(ErrorKind::unsupportedSchema, "Unsupported workspace schema v" + std::to_string(version) +
                                                  "; this build supports v" +
                                                  std::to_string(Workspace::currentSchemaVersion) + ".");
}

Workspace migrated(Workspace workspace) {
    if (workspace.schemaVersion == 1) {
        auto& desktops = workspace.snapshot.desktops;
        if (!desktops) desktops.emplace();
        workspace.schemaVersion = Workspace::currentSchemaVersion;
    }
    if (showsTabsAsWindows(workspace.snapshot)) {
        for (ApplicationSnapshot& application : workspace.snapshot.applications)
            application = NativeTabs::collapse(std::move(application));
    }
    for (ApplicationSnapshot& application : workspace.snapshot.applications) {
        if (application.context && application.context->adapter == "chromium")
            decodeAddresses(*application.context);
    }
    return workspace;
}

}  // namespace quillo::WorkspaceCoding
