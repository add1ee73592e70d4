#include "tests/platform/macos/fakes/FakeMac.hpp"

#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

FakeMac* installed = nullptr;

}  // namespace

FakeMac::FakeMac(SimulatedDesktop& desktop) : desktop_(desktop) {
    if (installed) fail("two Macs at once");
    installed = this;
}

FakeMac::~FakeMac() {
    parts_.clear();
    installed = nullptr;
}

FakeMac& FakeMac::current() {
    if (!installed) fail("a function of the system is called where no FakeMac is");
    return *installed;
}

FakeMac& FakeMac::onItsThread() {
    if (current().thread_ != std::this_thread::get_id())
        fail("a function of the system is called on another thread than the main thread");
    return current();
}

void* FakeMac::symbol(const char* library, const char* name) {
    const auto& symbols = current().symbols_;
    const auto found = symbols.find({library, name});
    return found == symbols.end() ? nullptr : found->second;
}

}  // namespace quillo::fakes
