// A Mac's C functions over a simulated desktop, for as long as a FakeMac lives. Each framework's fake is a
// part of it, found by its type; FakeObject counts what the functions hand out.
#pragma once
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <typeindex>
#include <utility>

#include "platform/macos/PrivateSymbols.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo::fakes {

class FakeMac {
  public:
    /// One at a time: the C functions find it through current(). The desktop outlives it.
    explicit FakeMac(SimulatedDesktop& desktop);
    FakeMac(const FakeMac&) = delete;
    FakeMac& operator=(const FakeMac&) = delete;
    ~FakeMac();
    static FakeMac& current();  // ends the program where there is none
    /// Of functions that the system, or its documentation, keeps to one thread: the one that made the
    /// FakeMac. Ends the program on any other.
    static FakeMac& onItsThread();

    SimulatedDesktop& desktop() { return desktop_; }

    /// The part of this type, made as Part(FakeMac&) when it is first asked for.
    template <class Part>
    Part& part() {
        std::shared_ptr<void>& slot = parts_[typeid(Part)];
        if (!slot) slot = std::make_shared<Part>(*this);
        return *static_cast<Part*>(slot.get());
    }

    /// Private functions: what a part provides here, symbol() finds by name.
    template <class Function>
    void provide(const char* library, const char* name, Function* function) {
        symbols_[{library, name}] = reinterpret_cast<void*>(function);
    }
    /// As on a system that lacks it.
    void withdraw(const char* library, const char* name) { symbols_.erase({library, name}); }
    /// To hand to what looks functions up; asks the FakeMac that is current at the call.
    static void* symbol(const char* library, const char* name);

  private:
    SimulatedDesktop& desktop_;
    const std::thread::id thread_ = std::this_thread::get_id();
    std::map<std::pair<std::string, std::string>, void*> symbols_;
    std::map<std::type_index, std::shared_ptr<void>> parts_;
};

}  // namespace quillo::fakes
