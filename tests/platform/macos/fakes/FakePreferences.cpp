#include "tests/platform/macos/fakes/FakePreferences.hpp"

#include "platform/macos/CFValues.hpp"

namespace quillo::fakes {
namespace {

FakePreferences& preferences() {
    return FakeMac::current().part<FakePreferences>();
}

FakePreferences::Key keyOf(CFStringRef key, CFStringRef application) {
    return {cf::text(application).value(), cf::text(key).value()};
}

}  // namespace
}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID) {
    const FakePreferences& all = preferences();
    const auto named = keyOf(key, applicationID);
    for (const auto* values : {&all.noted, &all.kept}) {
        if (const auto found = values->find(named); found != values->end())
            return found->second ? CFRetain(found->second.get()) : nullptr;
    }
    return nullptr;
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID) {
    preferences().noted.insert_or_assign(keyOf(key, applicationID),
                                         quillo::CFRef<CFTypeRef>::retained(value));
}

Boolean CFPreferencesAppSynchronize(CFStringRef applicationID) {
    FakePreferences& all = preferences();
    if (all.failures > 0) return --all.failures, false;
    const std::string application = quillo::cf::text(applicationID).value();
    for (auto& [key, value] : std::exchange(all.noted, {})) {
        if (key.first != application) {
            all.noted.emplace(key, value);
        } else if (value) {
            all.kept.insert_or_assign(key, value);
        } else {
            all.kept.erase(key);
        }
    }
    return true;
}
