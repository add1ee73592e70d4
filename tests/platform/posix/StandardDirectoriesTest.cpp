#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/posix/StandardDirectories.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

TEST(StandardDirectories, AreForThePersonAlone) {
    const TemporaryDirectory home;
    for (const char* folder : {"data", "data/Quillo", "run"})
        std::filesystem::create_directory(home / folder);
    std::filesystem::create_symlink("run", home / "link");
    for (const auto& [variable, folder] : {std::pair{"HOME", "."}, {"XDG_DATA_HOME", "data"}})
        ::setenv(variable, (home / folder).c_str(), 1);
    const std::filesystem::path fallback = home / "data/Quillo/run";
    for (const auto& [runtime, mode, expected] : {std::tuple{home / "run", 0700u, home / "run/quillo"},
                                                  {home / "link", 0700u, home / "link/quillo"},
                                                  {home / "run", 0750u, fallback},
                                                  {home / "run", 0701u, fallback},
                                                  {home / "missing", 0700u, fallback},
                                                  {"run", 0700u, fallback},
                                                  {"/", 0700u, fallback}}) {
        ASSERT_EQ(::chmod((home / "run").c_str(), mode), 0);
        for (const char* folder : {"data", "data/Quillo"})
            ASSERT_EQ(::chmod((home / folder).c_str(), 0755), 0);
        ::setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
        EXPECT_EQ(StandardDirectories::find()->runtime, expected) << runtime << std::oct << mode;
        EXPECT_EQ(home.mode("data/Quillo"), 0700u);
        EXPECT_EQ(home.mode("data"), 0755u) << "others' too";
    }
}

}  // namespace
}  // namespace quillo
