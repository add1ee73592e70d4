#include "tests/platform/macos/fakes/FakeRunLoop.hpp"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/macos/CFRef.hpp"
#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

using Clock = std::chrono::steady_clock;

/// Guards all that follows; nothing is called while it is held.
std::mutex& everything() {
    static std::mutex& mutex = *new std::mutex;
    return mutex;
}

class RunLoop;

/// What a loop holds on to in one mode.
struct Member : Object {
    using Object::Object;

    RunLoop* loop = nullptr;  // at most one here
    CFRunLoopMode mode = nullptr;
    bool valid = true;

    bool servedIn(CFRunLoopMode running) const {
        return mode == kCFRunLoopCommonModes || CFEqual(mode, running);
    }
};

struct Source final : Member {
    static CFTypeID typeID() {
        static const CFTypeID id = typeNamed("CFRunLoopSource");
        return id;
    }
    Source(const CFRunLoopSourceContext& given, CFIndex place)
        : Member(typeID()), context(given), order(place) {}

    const CFRunLoopSourceContext context;
    const CFIndex order;  // lower ones are performed first
    bool signalled = false;
};

struct Timer final : Member {
    static CFTypeID typeID() {
        static const CFTypeID id = typeNamed("CFRunLoopTimer");
        return id;
    }
    Timer(CFAbsoluteTime first, CFTimeInterval every, CFRunLoopTimerCallBack function, void* argument)
        : Member(typeID()), fireDate(first), interval(every), callout(function), info(argument) {}

    CFAbsoluteTime fireDate;
    const CFTimeInterval interval;
    const CFRunLoopTimerCallBack callout;
    void* const info;
    bool firing = false;
};

class RunLoop final : public Typed<"CFRunLoop"> {
  public:
    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    ~RunLoop() override {
        for (const auto& member : members_) objectOf(member).loop = nullptr;
    }

    void add(Member& member, CFRunLoopMode mode) {
        const std::lock_guard lock(everything());
        if (!member.valid || member.loop) fail("an invalid member of a run loop, or one that is in a loop");
        member.loop = this;
        member.mode = mode;
        const auto goesBefore = [](const Member& one, const Member& other) {
            const auto* source = dynamic_cast<const Source*>(&one);
            const auto* present = dynamic_cast<const Source*>(&other);
            return source && present && present->order > source->order;
        };
        const auto place = std::ranges::find_if(
            members_, [&](const auto& other) { return goesBefore(member, objectOf(other)); });
        members_.insert(place, CFRef<CFTypeRef>::retained(member.as<CFTypeRef>()));
    }
    /// Gives back the loop's reference, to be released without the lock.
    CFRef<CFTypeRef> remove(const Member& member) {
        const auto found = std::ranges::find(members_, member.as<CFTypeRef>(), &CFRef<CFTypeRef>::get);
        auto reference = std::move(*found);
        members_.erase(found);
        return reference;
    }
    CFRunLoopRunResult run(CFRunLoopMode mode, CFTimeInterval seconds, bool untilSourceHandled);
    void wakeUp() {
        const std::lock_guard lock(everything());
        woken_ = true;
        changed_.notify_all();
    }

    std::size_t passes = 0;

  private:
    static Member& objectOf(const CFRef<CFTypeRef>& member) {
        return static_cast<Member&>(objectAt(member.get()));
    }
    template <class Kind, class Filter>
    CFRef<CFTypeRef> first(CFRunLoopMode mode, Filter filter);
    bool performSource(CFRunLoopMode mode);
    bool fireTimer(CFRunLoopMode mode);
    bool isEmpty(CFRunLoopMode mode) const;
    void sleep(CFRunLoopMode mode, Clock::time_point deadline);

    std::vector<CFRef<CFTypeRef>> members_;
    std::condition_variable changed_;
    bool woken_ = false;
};

template <class Kind, class Filter>
CFRef<CFTypeRef> RunLoop::first(CFRunLoopMode mode, Filter filter) {
    const std::lock_guard lock(everything());
    for (const auto& reference : members_) {
        Member& member = objectOf(reference);
        if (member.type() == Kind::typeID() && member.servedIn(mode) && filter(static_cast<Kind&>(member)))
            return reference;
    }
    return {};
}

bool RunLoop::performSource(CFRunLoopMode mode) {
    const auto reference =
        first<Source>(mode, [](Source& source) { return std::exchange(source.signalled, false); });
    if (!reference) return false;
    const CFRunLoopSourceContext& context = fakes::objectOf<Source>(reference.get()).context;
    context.perform(context.info);
    return true;
}

bool RunLoop::fireTimer(CFRunLoopMode mode) {
    const auto reference = first<Timer>(
        mode, [](Timer& timer) { return !timer.firing && timer.fireDate <= CFAbsoluteTimeGetCurrent(); });
    if (!reference) return false;
    Timer& timer = fakes::objectOf<Timer>(reference.get());
    if (timer.interval <= 0) fail("a timer that fires once, which the fake does not have");
    timer.fireDate += timer.interval;
    timer.firing = true;
    timer.callout(timer.asMutable<CFRunLoopTimerRef>(), timer.info);
    timer.firing = false;
    return true;
}

bool RunLoop::isEmpty(CFRunLoopMode mode) const {
    const std::lock_guard lock(everything());
    return std::ranges::none_of(members_,
                                [&](const auto& member) { return objectOf(member).servedIn(mode); });
}

void RunLoop::sleep(CFRunLoopMode mode, Clock::time_point deadline) {
    std::unique_lock lock(everything());
    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    const Clock::time_point start = Clock::now();
    for (const auto& reference : members_) {
        const auto* timer = dynamic_cast<const Timer*>(&objectOf(reference));
        constexpr CFTimeInterval farthest = 1e9;
        if (!timer || !timer->servedIn(mode) || timer->fireDate - now > farthest) continue;
        const std::chrono::duration<double> left(timer->fireDate - now);
        deadline = std::min(deadline, start + std::chrono::ceil<Clock::duration>(left));
    }
    changed_.wait_until(lock, deadline, [this] { return woken_; });
    woken_ = false;
}

CFRunLoopRunResult RunLoop::run(CFRunLoopMode mode, CFTimeInterval seconds, bool untilSourceHandled) {
    constexpr CFTimeInterval longest = 1e9;
    const auto limit = std::chrono::duration<double>(std::clamp(seconds, 0.0, longest));
    const auto deadline = Clock::now() + std::chrono::ceil<Clock::duration>(limit);
    for (;;) {
        ++passes;
        if (isEmpty(mode)) return kCFRunLoopRunFinished;
        const bool handled = performSource(mode);
        if (handled && untilSourceHandled) return kCFRunLoopRunHandledSource;
        const bool fired = !handled && fireTimer(mode);
        if (Clock::now() >= deadline) return kCFRunLoopRunTimedOut;
        if (!handled && !fired) sleep(mode, deadline);
    }
}

thread_local std::optional<CFRef<CFRunLoopRef>> current;

RunLoop& loopOf(CFRunLoopRef reference) {
    return objectOf<RunLoop>(reference);
}

void invalidate(Member& member) {
    CFRef<CFTypeRef> reference;
    const std::lock_guard lock(everything());
    member.valid = false;
    if (RunLoop* loop = std::exchange(member.loop, nullptr)) reference = loop->remove(member);
}

}  // namespace

const CFRunLoopMode menuTrackingMode = immortalText("menu tracking");

std::size_t runLoopPasses() {
    return loopOf(CFRunLoopGetCurrent()).passes;
}

void endRunLoop() {
    current.reset();
}

}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

const CFRunLoopMode kCFRunLoopDefaultMode = immortalText("kCFRunLoopDefaultMode");
const CFRunLoopMode kCFRunLoopCommonModes = immortalText("kCFRunLoopCommonModes");

CFRunLoopRef CFRunLoopGetCurrent() {
    if (!current) current = quillo::CFRef<CFRunLoopRef>::created((new RunLoop)->asMutable<CFRunLoopRef>());
    return current->get();
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled) {
    if (CFEqual(mode, kCFRunLoopCommonModes)) fail("a run loop cannot run in the common modes");
    return loopOf(CFRunLoopGetCurrent()).run(mode, seconds, returnAfterSourceHandled != 0);
}

void CFRunLoopWakeUp(CFRunLoopRef loop) {
    loopOf(loop).wakeUp();
}

CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef, CFIndex order, CFRunLoopSourceContext* context) {
    if (context->version != 0 || !context->perform || context->retain || context->release ||
        context->schedule || context->cancel)
        fail("a run loop source that the fake does not know");
    return (new Source(*context, order))->asMutable<CFRunLoopSourceRef>();
}

void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    loopOf(loop).add(objectOf<Source>(source), mode);
}

void CFRunLoopSourceSignal(CFRunLoopSourceRef source) {
    Source& signalled = objectOf<Source>(source);
    const std::lock_guard lock(everything());
    signalled.signalled = true;
}

void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
    invalidate(objectOf<Source>(source));
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef, CFAbsoluteTime fireDate, CFTimeInterval interval,
                                       CFOptionFlags, CFIndex, CFRunLoopTimerCallBack callout,
                                       CFRunLoopTimerContext* context) {
    if (context->retain || context->release) fail("a run loop timer that the fake does not know");
    return (new Timer(fireDate, interval, callout, context->info))->asMutable<CFRunLoopTimerRef>();
}

void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
    loopOf(loop).add(objectOf<Timer>(timer), mode);
}

void CFRunLoopTimerSetNextFireDate(CFRunLoopTimerRef timer, CFAbsoluteTime fireDate) {
    Timer& changed = objectOf<Timer>(timer);
    const std::lock_guard lock(everything());
    if (!changed.valid) fail("a run loop timer that is not valid any more");
    // Core Foundation may adjust a date a little: here it is brought forward where there is room for it.
    constexpr CFTimeInterval adjustment = 0.0005;
    const bool hasRoom = fireDate - CFAbsoluteTimeGetCurrent() > 2 * adjustment;
    changed.fireDate = hasRoom ? fireDate - adjustment : fireDate;
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
    invalidate(objectOf<Timer>(timer));
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
    const std::chrono::duration<double> since1970 = std::chrono::system_clock::now().time_since_epoch();
    return since1970.count() - kCFAbsoluteTimeIntervalSince1970;
}
