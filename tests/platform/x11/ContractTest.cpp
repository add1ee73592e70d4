// The contract of every platform layer, over a real desktop.
#include <fstream>

#include "tests/platform/contract/ContractSuite.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

class X11ContractDesktop final : public ContractDesktop {
  public:
    X11ContractDesktop() {
        for (const auto* name : {"Editor", "Launcher"}) {
            std::ofstream(entry(name)) << "[Desktop Entry]\nType=Application\nName=" << name
                                       << "\nExec=" << QUILLO_TEST_CLIENT << " --class=" << name << "\n";
        }
        waitFor([&] {
            auto created = X11Desktop::create(loop_, {.display = desktop_.display()});
            if (created) layer_ = std::move(*created);
            return created.has_value();
        });
        if (!layer_) throw std::runtime_error("no desktop");
        const auto displays = platform().windowServer.displaySpaces();
        desktopsBefore_ = displays.empty() ? 1 : displays.front().spaces.size();
        editor_ = std::make_unique<Process>(
            std::vector<std::string>{QUILLO_TEST_CLIENT, "--class", "Editor", "--title", std::string(alpha),
                                     "--title", std::string(beta), "--dialog", std::string(gamma)});
    }
    ~X11ContractDesktop() override {
        desktop_.run({"wmctrl", "-n", std::to_string(desktopsBefore_)});
        editor_.reset();
        EXPECT_TRUE(waitFor([&] { return platform().applications.running().empty() || !turn(); }));
        EXPECT_EQ(layer_->strayErrors(), 0u);
        EXPECT_TRUE(desktop_.server().lives() && desktop_.windowManager().lives());
        for (const auto* name : {"Editor", "Launcher"}) std::filesystem::remove(entry(name));
    }
    Platform platform() override { return layer_->platform(log_); }
    Loop& loop() override { return loop_; }
    std::string editor() const override { return "Editor"; }
    std::string launcher() const override { return "Launcher"; }
    void vanish(std::string_view title) override { desktop_.run({"wmctrl", "-F", "-c", std::string(title)}); }

  private:
    static std::filesystem::path entry(const std::string& name) {
        return PrivateDesktop::home() / "data/applications" / (name + ".desktop");
    }
    /// Lets what was read before be forgotten.
    bool turn() {
        bool passed = false;
        loop_.post([&] { passed = true; });
        return loop_.runUntil([&] { return passed; }, std::chrono::seconds(1));
    }

    SilentLog log_;
    PrivateDesktop& desktop_ = sharedDesktop();
    LoopExecutor loop_;
    std::unique_ptr<X11Desktop> layer_;
    std::unique_ptr<Process> editor_;
    std::size_t desktopsBefore_ = 1;  // the server is shared by all cases
};

std::unique_ptr<ContractDesktop> makeDesktop() {
    return std::make_unique<X11ContractDesktop>();
}

}  // namespace
}  // namespace quillo::x11test

namespace quillo {
INSTANTIATE_TEST_SUITE_P(X11, PlatformContract, testing::Values(&x11test::makeDesktop),
                         [](const auto&) { return x11test::PrivateDesktop::chosenWindowManager(); });
}  // namespace quillo
