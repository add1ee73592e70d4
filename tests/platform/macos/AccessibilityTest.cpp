// The accessibility core over the fake framework: what applications may answer, and what must become of it.
#include <array>
#include <cmath>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "platform/macos/CFValues.hpp"
#include "platform/macos/MacAccessibility.hpp"
#include "tests/platform/macos/MacTest.hpp"
#include "tests/platform/macos/fakes/FakeAccessibility.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using fakes::FakeAccessibility;
using Reason = AttributeMiss::Reason;

constexpr std::string_view scene = R"({
  "displays": [{"id": "ONE", "frame": [0, 0, 1440, 900]}],
  "applications": [
    {"identifier": "org.example.editor", "windows": [
      {"title": "Alpha", "frame": [40, 60, 400, 300], "document": "file:///Users/me/a.txt"},
      {"title": "Beta", "frame": [500, 80, 420, 320], "subrole": "AXDialog"}]},
    {"identifier": "org.example.other", "windows": [{"title": "Other", "frame": [90, 90, 300, 200]}]}
  ]})";

constexpr std::array<std::string_view, 8> names{ax::subrole,  ax::position,  ax::size,       ax::title,
                                                ax::document, ax::minimized, ax::fullScreen, "AXNoSuchThing"};

class AccessibilityTest : public MacTest {
  protected:
    void SetUp() override {
        desktop_ = SimulatedDesktop::create(scene, "scene").value();
        mac_.emplace(*desktop_);
        fake_ = &mac_->part<FakeAccessibility>();
        ax_.emplace(&fakes::FakeMac::symbol);
    }

    ProcessID pid(std::string_view identifier = "org.example.editor") {
        return desktop_->world().application(identifier)->pid;
    }
    std::vector<Element> windows(std::string_view identifier = "org.example.editor", double timeout = 1) {
        const Element application = ax_->application(pid(identifier));
        ax_->setMessagingTimeout(application, timeout);
        const Attribute answer = read(application, {&ax::windows, 1}).front();
        return answer ? std::get<std::vector<Element>>(*answer) : std::vector<Element>();
    }
    std::vector<Attribute> read(const Element& element,
                                std::span<const std::string_view> attributes = names) {
        const AttributeRequest request{element, attributes};
        return ax_->read({&request, 1}).front();
    }
    Reason reason(const Element& element, std::string_view name) {
        return read(element, {&name, 1}).front().error().reason;
    }
    /// As the engine enumerates them, through this core.
    std::vector<LiveWindow> enumerate() {
        Platform platform = desktop_->platform();
        WindowHandleCache handles;
        DesktopAccess access{{platform.executor, *ax_, platform.windowServer, platform.applications,
                              platform.screens, platform.scripts, platform.browserFiles, platform.log},
                             handles};
        return Accessibility::windows(access, pid(), false);
    }
    void hang(std::string identifier) {
        simulated::Fault fault;
        fault.kind = simulated::FaultKind::applicationHangs;
        fault.application = std::move(identifier);
        desktop_->world().add(fault);
    }
    template <class Act>
    double secondsOf(Act act) {
        const TimePoint before = desktop_->executor().now();
        act();
        return std::chrono::duration<double>(desktop_->executor().now() - before).count();
    }

    std::unique_ptr<SimulatedDesktop> desktop_;
    std::optional<fakes::FakeMac> mac_;
    FakeAccessibility* fake_ = nullptr;
    std::optional<MacAccessibility> ax_;
};

TEST_F(AccessibilityTest, ABatchMeansOneByOneAndCostsOneMessage) {
    const Element window = windows().front();
    fake_->messages = 0;
    const auto together = read(window);
    EXPECT_EQ(fake_->messages, 1);
    EXPECT_EQ(std::get<std::string>(*together[4]), "file:///Users/me/a.txt");
    EXPECT_EQ(together[7].error(), (AttributeMiss{Reason::absent, kAXErrorAttributeUnsupported}));

    for (const AXError error : {kAXErrorFailure, kAXErrorIllegalArgument, kAXErrorAttributeUnsupported,
                                kAXErrorNotImplemented, kAXErrorAPIDisabled}) {
        fake_->failBatches(error);
        fake_->messages = 0;
        EXPECT_EQ(read(window), together) << error;
        EXPECT_EQ(fake_->messages, 1 + static_cast<int>(names.size()));
    }
}

TEST_F(AccessibilityTest, WhateverStandsForAMissingValueInABatchIsAbsent) {
    const Element window = windows().front();
    const auto together = read(window);
    fake_->answerBatches(FakeAccessibility::Batch::tooShort);  // then it is asked one by one
    EXPECT_EQ(read(window), together);
    fake_->answerBatches(FakeAccessibility::Batch::nullForErrors);
    auto expected = together;
    expected[7] = std::unexpected(AttributeMiss{Reason::absent, kAXErrorNoValue});
    EXPECT_EQ(read(window), expected);
}

TEST_F(AccessibilityTest, EachErrorHasItsReason) {
    struct Case {
        AXError error;
        Reason reason;
    };
    const Element window = windows().front();
    const Element other = windows("org.example.other").front();
    for (const auto& [error, reason] :
         {Case{kAXErrorFailure, Reason::refused}, Case{kAXErrorIllegalArgument, Reason::refused},
          Case{kAXErrorInvalidUIElement, Reason::gone}, Case{kAXErrorCannotComplete, Reason::timedOut},
          Case{kAXErrorAttributeUnsupported, Reason::absent}, Case{kAXErrorNotImplemented, Reason::refused},
          Case{kAXErrorAPIDisabled, Reason::refused}, Case{kAXErrorNoValue, Reason::absent},
          Case{kAXErrorNotEnoughPrecision, Reason::refused}}) {
        fake_->fail("AXTitle", error);
        const std::array requests{AttributeRequest{window, {&ax::title, 1}}, AttributeRequest{window, names},
                                  AttributeRequest{other, {&ax::subrole, 1}}};
        const auto answers = ax_->read(requests);
        EXPECT_EQ(answers[0][0].error(), (AttributeMiss{reason, error}));
        EXPECT_EQ(answers[1][3].error(), (AttributeMiss{reason, error}));
        EXPECT_EQ(answers[1][0].has_value(), reason != Reason::timedOut) << error;  // unasked after one
        EXPECT_EQ(answers[2][0].has_value(), reason != Reason::timedOut) << "nor is anybody else";
    }
}

/// Each attribute of a window, answered with each kind of value: only the right kind counts, a wrong one
/// costs the window where it needs the attribute, and nothing else.
TEST_F(AccessibilityTest, AnApplicationMayAnswerWithAnything) {
    struct Odd {
        std::string_view kind;
        CFRef<CFTypeRef> value;
    };
    const auto keep = [](auto object) { return CFRef<CFTypeRef>::created(object.release()); };
    const auto box = [](AXValueType type, auto value) {
        return CFRef<CFTypeRef>::created(AXValueCreate(type, &value));
    };
    const auto list = [](CFTypeRef item) { return cf::makeArray(std::array<CFTypeRef, 2>{item, kCFNull}); };
    const auto standard = cf::makeText(ax::standardWindow);
    const std::array odds{
        Odd{"nothing", {}},
        Odd{"null", CFRef<CFTypeRef>::retained(kCFNull)},
        Odd{"flag", CFRef<CFTypeRef>::retained(kCFBooleanTrue)},
        Odd{"number", keep(cf::makeInteger(7))},
        Odd{"no number", keep(cf::makeNumber(std::nan("")))},
        Odd{"text", keep(standard)},
        Odd{"data", keep(cf::makeData({}))},
        Odd{"date", keep(cf::makeDate({}))},
        Odd{"dictionary", keep(cf::makeDictionary({}))},
        Odd{"texts", keep(list(standard.get()))},
        Odd{"point", box(kAXValueTypeCGPoint, CGPoint{1, 2})},
        Odd{"endless point", box(kAXValueTypeCGPoint, CGPoint{1, INFINITY})},
        Odd{"size", box(kAXValueTypeCGSize, CGSize{30, 20})},
        Odd{"no size", box(kAXValueTypeCGSize, CGSize{NAN, 20})},
        Odd{"rectangle", box(kAXValueTypeCGRect, CGRect{{1, 2}, {30, 20}})},
        Odd{"range", box(kAXValueTypeCFRange, CFRange{0, 1})},
        Odd{"error", box(kAXValueTypeAXError, kAXErrorFailure)},
        Odd{"element", CFRef<CFTypeRef>::created(AXUIElementCreateApplication(pid()))},
    };
    const std::map<std::string_view, std::string_view> needed{
        {ax::windows, ""}, {ax::subrole, "text"}, {ax::position, "point"}, {ax::size, "size"}};
    for (const std::string_view name : {ax::windows, ax::subrole, ax::position, ax::size, ax::title,
                                        ax::document, ax::minimized, ax::fullScreen}) {
        for (const Odd& odd : odds) {
            SCOPED_TRACE(std::string(name) + " is " + std::string(odd.kind));
            fake_->answer(std::string(name), odd.value);
            const bool lost = needed.contains(name) && needed.at(name) != odd.kind;
            const auto found = enumerate();
            EXPECT_EQ(found.size(), lost ? 0U : 2U);
            for (const LiveWindow& window : found) {
                EXPECT_EQ(window.info.isMinimized, name == ax::minimized && odd.kind == "flag");
                EXPECT_EQ(window.info.isFullscreen, name == ax::fullScreen && odd.kind == "flag");
                EXPECT_EQ(window.info.title.has_value(), name != ax::title || odd.kind == "text");
            }
            fake_->behave();
        }
    }
}

TEST_F(AccessibilityTest, AddressesAndElementsAreValuesToo) {
    const Element window = windows().front();
    constexpr std::string_view address = "https://example.org/a";
    fake_->answer("AXDocument", CFRef<CFTypeRef>::created(CFURLCreateWithBytes(
                                    nullptr, reinterpret_cast<const UInt8*>(address.data()), address.size(),
                                    kCFStringEncodingUTF8, nullptr)));
    fake_->answer("AXParent", CFRef<CFTypeRef>::created(AXUIElementCreateApplication(pid())));
    constexpr std::array<std::string_view, 2> asked{"AXDocument", "AXParent"};
    const auto answers = read(window, asked);
    EXPECT_EQ(std::get<std::string>(*answers[0]), address);
    EXPECT_EQ(std::get<Element>(*answers[1]), ax_->application(pid()));
    EXPECT_FALSE(std::get<Element>(*answers[1]) == window);
}

TEST_F(AccessibilityTest, AHangCostsOneTimeoutOfItsOwnElement) {
    const auto editor = windows("org.example.editor", 0.5);
    const Element other = windows("org.example.other").front();
    hang("org.example.editor");
    const std::array requests{AttributeRequest{editor[0], names}, AttributeRequest{editor[1], names},
                              AttributeRequest{other, names}};
    std::vector<std::vector<Attribute>> answers;
    // The timeout is that of the application, although it was the windows' references that were asked with.
    EXPECT_EQ(secondsOf([&] { answers = ax_->read(requests); }), 0.5);
    for (const auto& attribute : {answers[0][0], answers[0][7], answers[1][3]})
        EXPECT_EQ(attribute.error(), (AttributeMiss{Reason::timedOut, kAXErrorCannotComplete}));
    EXPECT_EQ(answers[2][0].error(), (AttributeMiss{Reason::timedOut, 0})) << "nobody else was asked";

    fake_->failBatches(kAXErrorNotImplemented);
    EXPECT_EQ(secondsOf([&] { read(editor[0]); }), 0.5);
    EXPECT_EQ(secondsOf([&] { EXPECT_FALSE(ax_->writeFrame(editor[0], {1, 2, 300, 200}).positionSet); }),
              0.5);
    ax_->setMessagingTimeout(editor[0], 0.05);
    EXPECT_EQ(secondsOf([&] { ax_->perform(editor[0], ax::raise); }), 0.05);
}

TEST_F(AccessibilityTest, AnApplicationOfSeveralProcessesListsTheWindowsOfAll) {
    const ProcessID first = pid(), second = pid("org.example.other"), gone = 99999;
    ax_.emplace(&fakes::FakeMac::symbol, [=](ProcessID) { return std::vector{first, gone, second}; });
    const auto all = windows();
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(std::get<std::string>(*read(all[2])[3]), "Other");
    EXPECT_EQ(windows("org.example.other").size(), 3U);  // under whichever pid it is asked for

    hang("org.example.other");
    const Element application = ax_->application(first);
    ax_->setMessagingTimeout(application, 0.25);
    const std::array requests{AttributeRequest{application, {&ax::windows, 1}},
                              AttributeRequest{all[2], names}, AttributeRequest{all[0], names}};
    std::vector<std::vector<Attribute>> answers;
    EXPECT_EQ(secondsOf([&] { answers = ax_->read(requests); }), 0.25);
    EXPECT_EQ(answers[0][0].error().reason, Reason::timedOut) << "a part of its windows is not its windows";
    EXPECT_EQ(answers[1][0].error().reason, Reason::timedOut);
    EXPECT_EQ(answers[2][0].error(), (AttributeMiss{Reason::timedOut, 0})) << "nobody else was asked";
}

TEST_F(AccessibilityTest, WhatIsGoneOrForbiddenSaysSo) {
    const Element window = windows().front();
    auto& world = desktop_->world();
    world.close(world.window("org.example.editor", "Alpha")->number);
    EXPECT_EQ(reason(window, ax::title), Reason::gone);
    EXPECT_EQ(ax_->write(window, ax::minimized, true).code, kAXErrorInvalidUIElement);
    EXPECT_EQ(ax_->perform(window, ax::raise).code, kAXErrorInvalidUIElement);
    EXPECT_EQ(reason(ax_->application(99999), ax::windows), Reason::gone);
    EXPECT_TRUE(ax_->trusted() && ax_->access());

    world.setTrusted(false);
    EXPECT_EQ(reason(ax_->application(pid()), ax::windows), Reason::refused);
    EXPECT_FALSE(ax_->trusted());
    EXPECT_NE(ax_->access().reason().find("System Settings"), std::string::npos);
    ax_->prompt();
    EXPECT_EQ(fake_->prompts, 1);
}

TEST_F(AccessibilityTest, WritesReachTheApplicationOrSayWhyNot) {
    const Element window = windows().front();
    const auto& state = desktop_->world().window("org.example.editor", "Alpha")->state;
    const FrameWrite written = ax_->writeFrame(window, {10, 20, 500, 350});
    EXPECT_TRUE(written.positionSet && written.sizeSet);
    EXPECT_EQ(state.frame, (Rect{10, 20, 500, 350}));
    EXPECT_TRUE(ax_->write(window, ax::minimized, true));
    EXPECT_TRUE(state.minimized);
    EXPECT_EQ(ax_->write(window, ax::title, std::string("\xff")).code, kAXErrorIllegalArgument);
    for (const AttributeValue& value : {AttributeValue(2.0), AttributeValue(std::string("x")),
                                        AttributeValue(window), AttributeValue(std::vector{window})})
        EXPECT_FALSE(ax_->write(window, ax::position, value)) << value.index();
    EXPECT_EQ(ax_->perform(window, "AXNoSuchAction").code, kAXErrorActionUnsupported);
}

TEST_F(AccessibilityTest, NumbersAndTokensComeFromPrivateFunctions) {
    const Element window = windows().front();
    const auto number = ax_->windowNumber(window);
    EXPECT_EQ(number, desktop_->world().window("org.example.editor", "Alpha")->number);
    EXPECT_EQ(ax_->windowNumber(ax_->application(pid())), std::nullopt);
    std::array<std::byte, 20> token{};
    token[0] = static_cast<std::byte>(pid() & 0xff);
    token[1] = static_cast<std::byte>(pid() >> 8);
    token[12] = static_cast<std::byte>(*number);
    EXPECT_TRUE(ax_->remoteTokens());
    EXPECT_EQ(ax_->elementFromToken(token), window);
    token[12] = std::byte{1};
    EXPECT_EQ(ax_->elementFromToken(token), std::nullopt);

    mac_->withdraw(hiServices::library, hiServices::createWithRemoteToken);
    MacAccessibility lacking(&fakes::FakeMac::symbol);
    EXPECT_FALSE(lacking.remoteTokens());
    EXPECT_EQ(lacking.elementFromToken(token), std::nullopt);
    EXPECT_EQ(lacking.windowNumber(window), number);
    mac_->withdraw(hiServices::library, hiServices::getWindow);
    EXPECT_EQ(MacAccessibility(&fakes::FakeMac::symbol).windowNumber(window), std::nullopt);
}

}  // namespace
}  // namespace quillo
