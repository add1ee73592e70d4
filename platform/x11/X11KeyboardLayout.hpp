// The keyboard of an X server as it is laid out at this moment.
#pragma once
#include <memory>

#include "platform/services/HotKeyService.hpp"
#include "platform/x11/X11Connection.hpp"

struct xkb_context;

namespace quillo {

/// Keeps nothing of the keyboard: each question reads map and group anew (some round trips, a few
/// milliseconds), so that an answer is never of a layout that was. Empty answers once the server has gone, or
/// where it does not know XKB.
class X11KeyboardLayout final : public KeyboardLayout {
  public:
    /// The connection must outlive it.
    explicit X11KeyboardLayout(const x11::X11Connection& connection);
    ~X11KeyboardLayout() override;

    std::optional<std::uint32_t> keyCode(std::uint32_t nativeKeyCode) const override;
    std::string characters(std::uint32_t keyCode) const override;

  private:
    struct Release {
        void operator()(xkb_context* context) const;
    };
    const x11::X11Connection& connection_;
    std::unique_ptr<xkb_context, Release> context_;
    bool hasXkb_ = false;
};

}  // namespace quillo
