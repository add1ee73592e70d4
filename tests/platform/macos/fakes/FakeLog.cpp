#include "tests/platform/macos/fakes/FakeLog.hpp"

#include <os/log.h>

#include <cstring>
#include <mutex>
#include <string_view>

#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

class LogObject final : public Typed<"os_log"> {
  public:
    LogObject(std::string first, std::string second)
        : subsystem(std::move(first)), category(std::move(second)) {}

    const std::string subsystem;
    const std::string category;
};

/// What the compiler lays out for one text: two bytes of summary, then a descriptor (kind and mark), a size
/// and the address.
std::string textIn(const std::uint8_t* buffer, std::size_t size) {
    constexpr std::size_t head = 4;
    constexpr unsigned isPublic = 2, isText = 2;
    if (size != head + sizeof(const char*) || buffer[1] != 1 || buffer[2] >> 4 != isText ||
        buffer[3] != sizeof(const char*))
        fail("a log message of another shape than one text");
    const char* text = nullptr;
    std::memcpy(&text, buffer + head, sizeof text);
    return (buffer[2] & isPublic) != 0 ? text : "<private>";
}

std::mutex anyThread;

}  // namespace
}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

os_log_t os_log_create(const char* subsystem, const char* category) {
    return (new LogObject(subsystem, category))->asMutable<os_log_t>();
}

void os_release(void* object) {
    objectAt(object).release();
}

bool os_log_type_enabled(os_log_t, os_log_type_t type) {
    return type != OS_LOG_TYPE_INFO || FakeMac::current().part<FakeLog>().infoEnabled;
}

void _os_log_impl(void*, os_log_t log, os_log_type_t type, const char* format, std::uint8_t* buffer,
                  std::uint32_t size) {
    if (std::string_view(format) != "%{public}s") fail("a log format that the fake does not know");
    const auto& object = objectOf<LogObject>(log);
    const std::lock_guard guard(anyThread);
    FakeMac::current().part<FakeLog>().lines.push_back(
        {object.subsystem, object.category, type, textIn(buffer, size)});
}
