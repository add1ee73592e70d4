// The engine's log lines, in one place so that what reaches a log can be seen at a glance: counts, seconds,
// identifiers of applications and integrations; never a title, a path or an address. An identifier that does
// not look like one, letters, digits and . _ - only, is not written.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "WindowEngine/services/SystemLog.hpp"

namespace quillo::Log {

void captured(SystemLog& log, std::size_t applications, std::size_t windows);
void adapterCaptured(SystemLog& log, std::string_view adapter, std::int64_t urls);
void adapterFailed(SystemLog& log, std::string_view adapter, std::string_view failure);
void ready(SystemLog& log, std::string_view bundleIdentifier, double seconds);
void requestedWindow(SystemLog& log, std::string_view bundleIdentifier);
void requestedMore(SystemLog& log, std::string_view bundleIdentifier, std::size_t windows);
/// `failure` is a text of DesktopPreparation::failures.
void desktopCreation(SystemLog& log, std::string_view failure);
/// `label` is the combination: glyphs of its modifiers and what the key cap shows.
void hotKeyUnavailable(SystemLog& log, std::string_view label, int status);
/// `reason` is a text of RestoreReport's, `count` how many items of this application have it.
void notBack(SystemLog& log, std::string_view bundleIdentifier, std::string_view outcome,
             std::string_view reason, std::size_t count);
void restoreFinished(SystemLog& log, std::size_t items, double seconds);

}  // namespace quillo::Log
