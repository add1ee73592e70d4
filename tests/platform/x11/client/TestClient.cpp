// A small X client for the tests: opens the windows its arguments describe, closes one when asked to (unless
// told to refuse), and ends with the last. No toolkit: nothing happens that was not asked for.
#include <sys/prctl.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

namespace {

struct Options {
    std::string windowClass = "TestClient", latin1Title, type, gtkApplicationID, desktopFile;
    std::vector<int> geometry{50, 60, 300, 200};  // x, y, width, height
    std::vector<int> increments, minimum, shadow;
    std::vector<std::uint32_t> strut;
    std::vector<std::string> titles{"window"}, documents;
    std::string dialog;  // title of a dialog that belongs to the first window
    std::string machine, processName;
    std::uint32_t pid = static_cast<std::uint32_t>(getpid());  // as its windows tell it; 0: not at all
    bool refuseClose = false, noProtocols = false,
         silent = false;  // says nothing of its documents in its titles
};

class Client {
  public:
    explicit Client(Options options) : options_(std::move(options)) {}

    bool connect() {
        xcb_ = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(xcb_) != 0) return false;
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data;
        return xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(xcb_, &ewmh_), nullptr) != 0;
    }

    void openAll() {
        for (const auto& title : options_.titles) open(title, options_.type, XCB_WINDOW_NONE);
        if (!options_.dialog.empty()) open(options_.dialog, "DIALOG", *windows_.begin());
        xcb_flush(xcb_);
    }

    void run() {
        const auto protocols = atom("WM_PROTOCOLS"), deleteWindow = atom("WM_DELETE_WINDOW");
        while (!windows_.empty()) {
            xcb_generic_event_t* event = xcb_wait_for_event(xcb_);
            if (!event) return;
            const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
            const bool close = (event->response_type & 0x7F) == XCB_CLIENT_MESSAGE &&
                               message->type == protocols && message->data.data32[0] == deleteWindow;
            if (close && !options_.refuseClose) {
                xcb_destroy_window(xcb_, message->window);
                windows_.erase(message->window);
                xcb_flush(xcb_);
            }
            free(event);
        }
    }

  private:
    xcb_atom_t atom(const std::string& name) {
        const auto length = static_cast<std::uint16_t>(name.size());
        auto* reply = xcb_intern_atom_reply(xcb_, xcb_intern_atom(xcb_, 0, length, name.c_str()), nullptr);
        const auto value = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        free(reply);
        return value;
    }

    void setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& text) {
        xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    }

    template <class T>
    void setWords(xcb_window_t window, xcb_atom_t property, const std::vector<T>& words) {
        xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
                            static_cast<std::uint32_t>(words.size()), words.data());
    }

    void setHints(xcb_window_t window, int x, int y, int width, int height) {
        xcb_size_hints_t hints{};
        xcb_icccm_size_hints_set_position(&hints, 1, x, y);
        xcb_icccm_size_hints_set_size(&hints, 1, width, height);
        if (options_.increments.size() == 2) {
            xcb_icccm_size_hints_set_base_size(&hints, options_.increments[0], options_.increments[0]);
            xcb_icccm_size_hints_set_resize_inc(&hints, options_.increments[1], options_.increments[1]);
        }
        if (options_.minimum.size() == 2) {
            xcb_icccm_size_hints_set_min_size(&hints, options_.minimum[0], options_.minimum[1]);
        }
        xcb_icccm_set_wm_normal_hints(xcb_, window, &hints);
    }

    void open(const std::string& title, const std::string& type, xcb_window_t owner) {
        const auto window = xcb_generate_id(xcb_);
        const auto& g = options_.geometry;
        const std::uint32_t values[] = {screen_->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
        xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window, screen_->root, static_cast<std::int16_t>(g[0]),
                          static_cast<std::int16_t>(g[1]), static_cast<std::uint16_t>(g[2]),
                          static_cast<std::uint16_t>(g[3]), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          screen_->root_visual, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        setHints(window, g[0], g[1], g[2], g[3]);
        auto text = title;
        for (const auto& document : options_.silent ? std::vector<std::string>() : options_.documents)
            text += "|" + document;
        if (options_.latin1Title.empty())
            setText(window, ewmh_._NET_WM_NAME, ewmh_.UTF8_STRING, text);
        else
            setText(window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, options_.latin1Title);
        std::string both = options_.windowClass;
        both[0] = static_cast<char>(std::tolower(both[0]));
        both += '\0' + options_.windowClass + '\0';
        setText(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, both);
        if (options_.pid != 0) setWords(window, ewmh_._NET_WM_PID, std::vector{options_.pid});
        if (!options_.machine.empty())
            setText(window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, options_.machine);
        if (!type.empty()) {
            auto kind = atom("_NET_WM_WINDOW_TYPE_" + type);
            xcb_ewmh_set_wm_window_type(&ewmh_, window, 1, &kind);
        }
        if (owner != XCB_WINDOW_NONE) xcb_icccm_set_wm_transient_for(xcb_, window, owner);
        auto deleteWindow = atom("WM_DELETE_WINDOW");
        if (!options_.noProtocols)
            xcb_icccm_set_wm_protocols(xcb_, window, atom("WM_PROTOCOLS"), 1, &deleteWindow);
        if (!options_.shadow.empty()) setWords(window, atom("_GTK_FRAME_EXTENTS"), options_.shadow);
        if (!options_.strut.empty()) setWords(window, ewmh_._NET_WM_STRUT_PARTIAL, options_.strut);
        if (!options_.gtkApplicationID.empty())
            setText(window, atom("_GTK_APPLICATION_ID"), ewmh_.UTF8_STRING, options_.gtkApplicationID);
        if (!options_.desktopFile.empty())
            setText(window, atom("_BAMF_DESKTOP_FILE"), XCB_ATOM_STRING, options_.desktopFile);
        xcb_map_window(xcb_, window);
        windows_.insert(window);
    }

    Options options_;
    xcb_connection_t* xcb_ = nullptr;
    xcb_screen_t* screen_ = nullptr;
    xcb_ewmh_connection_t ewmh_{};
    std::set<xcb_window_t> windows_;
};

}  // namespace

int main(int count, char** arguments) {
    Options options;
    CLI::App app;
    app.add_option("--class", options.windowClass);
    app.add_option("--title", options.titles)->allow_extra_args(false);
    app.add_option("--latin1-title", options.latin1Title);
    app.add_option("--type", options.type);
    app.add_option("--gtk-application-id", options.gtkApplicationID);
    app.add_option("--desktop-file", options.desktopFile);
    app.add_option("--geometry", options.geometry)->expected(4)->delimiter(',');
    app.add_option("--increments", options.increments)->expected(2)->delimiter(',');
    app.add_option("--minimum", options.minimum)->expected(2)->delimiter(',');
    app.add_option("--shadow", options.shadow)->expected(4)->delimiter(',');
    app.add_option("--strut", options.strut)->expected(12)->delimiter(',');
    app.add_option("--dialog", options.dialog);
    app.add_flag("--refuse-close", options.refuseClose);
    app.add_flag("--no-protocols", options.noProtocols);
    app.add_option("--pid", options.pid);
    app.add_option("--machine", options.machine);
    app.add_option("--process-name", options.processName);
    app.add_flag("--silent", options.silent);
    app.add_option("documents", options.documents);
    CLI11_PARSE(app, count, arguments);
    if (!options.processName.empty()) prctl(PR_SET_NAME, options.processName.c_str());
    Client client(std::move(options));
    if (!client.connect()) {
        std::fputs("no X server\n", stderr);
        return 1;
    }
    client.openAll();
    client.run();
}
