// Defaults in memory, which a test can make refuse to be set.
#pragma once
#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/services/UserDefaults.hpp"

namespace quillo {

class MemoryDefaults final : public UserDefaults {
  public:
    std::string place() const override { return "memory"; }
    std::optional<std::string> data(std::string_view key) const override {
        const auto found = values_.find(key);
        return found == values_.end() ? std::nullopt : std::optional(found->second);
    }
    Result<void> setData(std::string_view key, std::optional<std::string> bytes) override {
        if (failure) return std::unexpected(*failure);
        flags_.erase(std::string(key));
        if (bytes) {
            values_.insert_or_assign(std::string(key), *std::move(bytes));
        } else {
            values_.erase(std::string(key));
        }
        return {};
    }
    bool boolean(std::string_view key) const override { return flags_.contains(key); }
    Result<void> setBoolean(std::string_view key, bool value) override {
        if (failure) return std::unexpected(*failure);
        values_.erase(std::string(key));
        if (value) {
            flags_.insert(std::string(key));
        } else {
            flags_.erase(std::string(key));
        }
        return {};
    }

    std::optional<Error> failure = std::nullopt;  // of every set from now on

  private:
    std::map<std::string, std::string, std::less<>> values_;
    std::set<std::string, std::less<>> flags_;
};

}  // namespace quillo
