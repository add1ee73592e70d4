// Folders and tabs of an application, through its integration.
#pragma once
#include <cstdint>
#include <set>
#include <string>

#include "WindowEngine/integrations/Adapters.hpp"
#include "WindowEngine/restore/ApplicationRestore.hpp"

namespace quillo::Restore {

/// The integration that brings this application's context back; null when there is no context, and when its
/// integration is unknown, not for this application, switched off or not to be had on this machine.
const ContextAdapter* contextAdapter(const Platform& platform, const ApplicationSnapshot& application,
                                     const std::set<std::string>& enabledAdapters);

/// The note about a context that is not brought back: it names the integration.
std::string unavailableIntegration(const Platform& platform, const AppContext& context);

/// How many saved windows neither a document nor an integration will bring a window for. An application that
/// runs and has no window is asked for one if there are any.
std::int64_t bareWindows(const Platform& platform, const ApplicationSnapshot& application,
                         const std::set<std::string>& enabledAdapters);

/// Opens what is not open yet and reports it. An application that was launched has up to 5 s to bring its own
/// windows back first, and then the time that its integration needs to learn what those show: that is not
/// opened again.
Task<void> restoreContext(ApplicationRestore& restore);

}  // namespace quillo::Restore
