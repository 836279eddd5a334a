#pragma once

#include "Settings/DefaultsStore.h"

#include <map>
#include <string>

namespace murmel {

/// Preferences that end with the test, and a record of what was written.
class InMemoryDefaultsStore final : public DefaultsStore {
 public:
  std::map<std::string, DefaultsValue, std::less<>> values;
  int writes = 0;

  [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const override {
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    return found->second;
  }
  [[nodiscard]] bool contains(std::string_view key) const override { return values.contains(key); }
  void set(std::string_view key, DefaultsValue value) override {
    ++writes;
    values.insert_or_assign(std::string(key), std::move(value));
  }
  void remove(std::string_view key) override {
    ++writes;
    values.erase(std::string(key));
  }
};

}  // namespace murmel
