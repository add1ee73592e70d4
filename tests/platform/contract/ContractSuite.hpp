// One suite of cases for everything that the seam promises, run over each platform layer that can run.
//
// A layer plugs in with a ContractDesktop of its own and, in a test program that links contract_suite:
//     INSTANTIATE_TEST_SUITE_P(Simulated, PlatformContract, testing::Values(&makeSimulatedContractDesktop));
// Each case gets a fresh desktop that shows what ContractDesktop describes.
#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/support/Job.hpp"
#include "WindowEngine/support/Loops.hpp"

namespace quillo {

class ContractDesktop {
  public:
    virtual ~ContractDesktop() = default;

    virtual Platform platform() = 0;
    virtual Loop& loop() = 0;

    // At the start a running application shows three plain windows with these titles, none minimized or full
    // screen, the first two on the desktop in front; "Gamma" is a dialog. Another application is installed
    // and does not run; launched, it opens a window.
    static constexpr std::string_view alpha = "Alpha", beta = "Beta", gamma = "Gamma";
    virtual std::string editor() const = 0;    // identifier of the running application
    virtual std::string launcher() const = 0;  // identifier of the installed one

    /// The window goes away without anybody asking through the seam.
    virtual void vanish(std::string_view title) = 0;
};

using ContractDesktopFactory = std::unique_ptr<ContractDesktop> (*)();

class PlatformContract : public testing::TestWithParam<ContractDesktopFactory> {
  protected:
    void SetUp() override;

    /// Lets the desktop live until the condition holds; fails the case after 10 s of its clock.
    void waitUntil(const std::function<bool()>& condition, std::string_view what);
    template <class T>
    T run(Task<T> task) {
        Job<T> job(desktop_->loop(), std::move(task));
        if (!desktop_->loop().runUntil([&] { return job.done(); }, std::chrono::seconds(20)))
            throw std::runtime_error("a task did not end");
        return job.result();
    }

    Platform platform() { return desktop_->platform(); }
    AccessibilityService& ax() { return platform().accessibility; }
    WindowServer& server() { return platform().windowServer; }
    Applications& applications() { return platform().applications; }
    std::vector<Screen> screens() { return platform().screens.screens(); }
    RunningApplication editor();
    Element editorElement() { return ax().application(editor().pid); }
    std::vector<Element> editorWindows();
    /// By exact title; fails the case when there is none.
    Element window(std::string_view title);
    Attribute read(const Element& element, std::string_view name);
    bool flag(const Element& element, std::string_view name);
    Rect frame(const Element& element);
    WindowFacts facts(const Element& window);
    /// 0 while it does not run.
    std::size_t launcherWindowCount();
    /// Those that the overview shows now, in the order of the displays.
    std::vector<Element> addDesktopButtons();

    std::unique_ptr<ContractDesktop> desktop_;
};

}  // namespace quillo
