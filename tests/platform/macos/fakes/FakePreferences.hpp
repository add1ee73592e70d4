// Fake preferences: what is kept on disk and what this process has noted since.
#pragma once
#include <CoreFoundation/CoreFoundation.h>

#include <map>
#include <string>
#include <utility>

#include "platform/macos/CFRef.hpp"
#include "tests/platform/macos/fakes/FakeMac.hpp"

namespace quillo::fakes {

class FakePreferences {
  public:
    using Key = std::pair<std::string, std::string>;  // application, key
    using Values = std::map<Key, CFRef<CFTypeRef>>;

    explicit FakePreferences(FakeMac&) {}

    Values noted;  // null: removed
    Values kept;
    int failures = 0;  // of the synchronisations to come
};

}  // namespace quillo::fakes
