// Browsers of an X11 desktop: their main windows by the role that these say they have, their files by the
// processes that the X server knows to hold them.
#pragma once
#include "WindowEngine/services/BrowserFiles.hpp"
#include "platform/linux/ProfileReader.hpp"
#include "platform/x11/DesktopView.hpp"

namespace quillo::x11 {

class X11BrowserFiles final : public BrowserFiles {
  public:
    explicit X11BrowserFiles(DesktopView& view) : view_(view), reader_(view.executor()) {}

    Capability reading() override { return Capability::available(); }
    Task<Result<std::vector<BrowserProcess>>> read(std::string bundleIdentifier,
                                                   BrowserFamily family) override;
    Task<Result<void>> run(std::string bundleIdentifier, std::vector<std::string> arguments) override;

  private:
    std::vector<ShownBrowserWindow> mainWindowsOf(ProcessID pid);

    DesktopView& view_;
    ProfileReader reader_;
};

}  // namespace quillo::x11
