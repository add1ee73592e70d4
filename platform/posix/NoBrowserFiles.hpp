// Where browsers are spoken to by scripts, their files are left alone.
#pragma once
#include "WindowEngine/services/BrowserFiles.hpp"

namespace quillo {

class NoBrowserFiles final : public BrowserFiles {
  public:
    Capability reading() override { return Capability::unavailable(reason); }
    Task<Result<std::vector<BrowserProcess>>> read(std::string, BrowserFamily) override {
        co_return fail(ErrorKind::unavailable, reason);
    }
    Task<Result<void>> run(std::string, std::vector<std::string>) override {
        co_return fail(ErrorKind::unavailable, reason);
    }

  private:
    static constexpr auto reason = "The files of browsers are not read on this system.";
};

}  // namespace quillo
