// The folders that file managers show, read from the entry in each window that holds its folder's path. Used
// from one thread, with a time limit at each call; an application that does not answer is left alone for a
// while.
#pragma once
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/support/Rect.hpp"
#include "platform/linux/AccessibilityBus.hpp"

namespace quillo {

class PathEntries {
  public:
    using Deadline = AccessibilityBus::Deadline;

    struct Window {
        std::uint32_t number = 0;
        ProcessID pid = 0;
        std::string title;
        Rect frame;  // where several of a process have one title
    };

    explicit PathEntries(GCancellable* cancellable) : cancellable_(cancellable) {}

    /// The text of each window's entry that is an absolute path to an existing folder the title speaks of;
    /// windows without one are missing. `address` is the bus's; another one than before means another bus.
    std::map<std::uint32_t, std::string> read(const std::vector<Window>& windows, const std::string& address,
                                              const std::string& home, Deadline deadline);
    /// Whether the last read() had not the time for all: the bus or an application did not answer, or is left
    /// alone since, or a search was put off.
    bool leftOpen() const { return leftOpen_; }
    /// The next read() leaves nobody alone, and puts off nothing.
    void startAnew();

  private:
    struct Entry {
        ProcessID pid = 0;
        Accessible frame;  // the window's own object, which is no other window's
        Accessible object;
    };
    /// What is still to be looked through for one window.
    struct Search {
        const Window* window = nullptr;
        Accessible frame{};
        std::vector<Accessible> level{};  // the objects at the depth reached
    };
    /// An object of a window that may be the entry.
    struct Candidate {
        const Window* window = nullptr;
        Accessible frame{};
        Accessible object{};
    };
    using Found = std::map<std::uint32_t, std::string>;

    bool isConnected(const std::string& address, Deadline deadline);
    bool rests(ProcessID pid) const;
    bool isKnown(const Accessible& frame) const;
    /// Asks for the candidates' texts, and remembers those that show their window's folder.
    void read(const std::vector<Candidate>& candidates, const std::string& home, Deadline deadline,
              Found& found);
    void search(const std::vector<const Window*>& windows, const std::string& home, Deadline deadline,
                Found& found);
    /// The accessible frames of these windows, those of windows whose entry is known left out.
    std::vector<Search> framesOf(const std::vector<const Window*>& windows, Deadline deadline);
    /// Splits a level into possible entries and the children of containers, which become the next level.
    std::vector<Candidate> descend(std::vector<Search>& searches, Deadline deadline);

    GCancellable* cancellable_;  // the owner's
    std::string address_;
    std::unique_ptr<AccessibilityBus> bus_;
    Deadline nextConnect_{}, nextSearch_{};
    bool leftOpen_ = false;
    std::map<std::uint32_t, Entry> entries_;   // where they were found
    std::map<ProcessID, Deadline> restUntil_;  // of applications that did not answer
};

}  // namespace quillo
