#include "platform/macos/MacDefaults.hpp"

#include <functional>
#include <span>

#include "platform/macos/CFValues.hpp"

namespace quillo {
namespace {

std::optional<std::string> dataOf(CFTypeRef value) {
    const auto bytes = cf::bytes(value);
    return bytes ? std::optional<std::string>(*bytes) : std::nullopt;
}

}  // namespace

MacDefaults::MacDefaults(std::string_view application) : application_(cf::makeText(application)) {}

std::string MacDefaults::place() const {
    return cf::text(application_.get()).value();
}

std::optional<std::string> MacDefaults::trouble() const {
    if (misplaced_.empty()) return std::nullopt;
    std::string keys;
    for (const std::string& key : misplaced_) keys += (keys.empty() ? "" : ", ") + key;
    return place() + ": " + keys + ": a value of another type stands there";
}

Result<std::string> MacDefaults::keepAside() {
    std::string kept;
    for (const std::string& key : std::set(misplaced_)) {
        const auto name = cf::makeText(key);
        const auto found = name ? value(name.get()) : CFRef<CFTypeRef>();
        const std::string aside = key + ".damaged";
        Result<void> moved = set(aside, found.get());
        if (moved) moved = set(key, nullptr);
        if (!moved) return std::unexpected(std::move(moved.error()));
        kept += (kept.empty() ? "" : ", ") + aside;
    }
    if (kept.empty()) return fail(ErrorKind::notFound, place() + " can be read by now");
    return kept + " in " + place();
}

void MacDefaults::refresh() {
    CFPreferencesAppSynchronize(application_.get());  // also reads what others have stored
}

std::optional<std::string> MacDefaults::data(std::string_view key) const {
    return read(key, dataOf);
}

Result<void> MacDefaults::setData(std::string_view key, std::optional<std::string> bytes) {
    if (!bytes) return set(key, nullptr);
    return set(key, cf::makeData(std::as_bytes(std::span(*bytes))).get());
}

bool MacDefaults::boolean(std::string_view key) const {
    return read(key, cf::boolean).value_or(false);
}

Result<void> MacDefaults::setBoolean(std::string_view key, bool value) {
    return set(key, cf::makeBoolean(value));
}

CFRef<CFTypeRef> MacDefaults::value(CFStringRef key) const {
    return CFRef<CFTypeRef>::created(CFPreferencesCopyAppValue(key, application_.get()));
}

template <class Value>
std::optional<Value> MacDefaults::read(std::string_view key, std::optional<Value> (*as)(CFTypeRef)) const {
    const auto name = cf::makeText(key);
    const auto stored = name ? value(name.get()) : CFRef<CFTypeRef>();
    auto found = as(stored.get());
    if (stored && !found) {
        misplaced_.emplace(key);
    } else if (const auto known = misplaced_.find(key); known != misplaced_.end()) {
        misplaced_.erase(known);
    }
    return found;
}

/// The system notes a value at once and says only on synchronising whether it can keep it.
Result<void> MacDefaults::set(std::string_view key, CFTypeRef value) {
    const auto name = cf::makeText(key);
    if (!name) return fail(ErrorKind::invalidArgument, "the key of a default is not valid UTF-8");
    const auto before = this->value(name.get());
    CFPreferencesSetAppValue(name.get(), value, application_.get());
    if (CFPreferencesAppSynchronize(application_.get())) {
        if (const auto known = misplaced_.find(key); known != misplaced_.end()) misplaced_.erase(known);
        return {};
    }
    CFPreferencesSetAppValue(name.get(), before.get(), application_.get());
    CFPreferencesAppSynchronize(application_.get());  // may fail as well: then what is kept never changed
    return fail(ErrorKind::io, "the system does not keep the defaults of " + place());
}

}  // namespace quillo
