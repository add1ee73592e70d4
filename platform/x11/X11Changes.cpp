#include "platform/x11/X11Changes.hpp"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>

#include "WindowEngine/support/Completion.hpp"

namespace quillo::x11 {

/// All for the executor's thread, but for the reader's.
class X11Changes::Listener : public std::enable_shared_from_this<Listener> {
  public:
    Listener(Executor& executor, const X11Connection& connection)
        : executor_(executor),
          told_{connection.atoms()._NET_CLIENT_LIST, connection.atoms()._NET_NUMBER_OF_DESKTOPS,
                connection.atoms()._NET_WM_STATE, connection.atoms()._NET_WM_DESKTOP},
          xcb_(xcb_connect(connection.displayName().c_str(), nullptr)) {}
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() { xcb_disconnect(xcb_); }

    Executor& executor() { return executor_; }
    void add(xcb_window_t window, Watch& watch);
    void remove(xcb_window_t window, const Watch& watch);

    /// Of the reader's thread: posts what it hears until the connection ends. An error tells of a window that
    /// went away.
    void readEvents();
    /// Makes the reader return, whatever the server does.
    void endReading() { shutdown(xcb_get_file_descriptor(xcb_), SHUT_RDWR); }

  private:
    /// The window whose frame, or whose property that is told of, has changed.
    std::optional<xcb_window_t> changedWindow(const xcb_generic_event_t& event) const;
    void changed(xcb_window_t window);

    Executor& executor_;
    const std::array<xcb_atom_t, 4> told_;
    xcb_connection_t* const xcb_;
    std::multimap<xcb_window_t, Watch*> watches_;
};

class X11Changes::Watch final : public ChangeWatch {
  public:
    Watch(std::shared_ptr<Listener> listener, xcb_window_t window)
        : listener_(std::move(listener)), window_(window) {
        listener_->add(window_, *this);
    }
    ~Watch() override { listener_->remove(window_, *this); }

    Task<bool> next(Duration limit) override {
        const Completion<bool> change(listener_->executor());
        setter_ = change.setter();
        if (std::exchange(missed_, false)) setter_->set(true);
        const auto told = co_await change.until(listener_->executor().timeAfter(limit));
        setter_.reset();
        co_return told.has_value();
    }
    void tell() {
        missed_ = !setter_;
        if (const auto setter = std::exchange(setter_, std::nullopt)) setter->set(true);
    }

  private:
    std::shared_ptr<Listener> listener_;
    xcb_window_t window_;
    std::optional<Completion<bool>::Setter> setter_;  // of a wait
    bool missed_ = false;                             // changed while nobody waited
};

void X11Changes::Listener::add(xcb_window_t window, Watch& watch) {
    const bool isFirst = !watches_.contains(window);
    watches_.emplace(window, &watch);
    if (!isFirst) return;
    constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    // Waited for, so that no change falls between this and what is read over the other connection next.
    std::free(xcb_request_check(
        xcb_, xcb_change_window_attributes_checked(xcb_, window, XCB_CW_EVENT_MASK, &events)));
}

void X11Changes::Listener::remove(xcb_window_t window, const Watch& watch) {
    const auto [begin, end] = watches_.equal_range(window);
    watches_.erase(std::find_if(begin, end, [&](const auto& one) { return one.second == &watch; }));
    if (watches_.contains(window)) return;
    constexpr std::uint32_t events = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(xcb_, window, XCB_CW_EVENT_MASK, &events);
    xcb_flush(xcb_);
}

void X11Changes::Listener::readEvents() {
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(xcb_)}) {
        const auto window = changedWindow(*event);
        if (!window) continue;
        executor_.post([self = weak_from_this(), window = *window] {
            if (const auto listener = self.lock()) listener->changed(window);
        });
    }
}

std::optional<xcb_window_t> X11Changes::Listener::changedWindow(const xcb_generic_event_t& event) const {
    switch (event.response_type & 0x7F) {
        case XCB_PROPERTY_NOTIFY: {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            const bool isTold = std::ranges::find(told_, property.atom) != told_.end();
            return isTold ? std::optional(property.window) : std::nullopt;
        }
        // Its frame, also where the window manager moves what holds the window: it sends one then.
        case XCB_CONFIGURE_NOTIFY:
            return reinterpret_cast<const xcb_configure_notify_event_t&>(event).window;
        default:
            return std::nullopt;
    }
}

void X11Changes::Listener::changed(xcb_window_t window) {
    const auto [begin, end] = watches_.equal_range(window);
    std::for_each(begin, end, [](const auto& one) { one.second->tell(); });
}

X11Changes::~X11Changes() {
    if (!listener_) return;
    listener_->endReading();
    reader_.join();
}

std::unique_ptr<ChangeWatch> X11Changes::watch(xcb_window_t window) {
    if (!listener_) {
        listener_ = std::make_shared<Listener>(executor_, connection_);
        reader_ = std::thread([listener = listener_.get()] { listener->readEvents(); });
    }
    return std::make_unique<Watch>(listener_, window);
}

}  // namespace quillo::x11
