#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// The environment variables of a process, read once. An empty value counts as none, as in most programs.
class Environment {
 public:
  Environment() = default;
  explicit Environment(std::map<std::string, std::string, std::less<>> values) : values_(std::move(values)) {}

  static Environment ofThisProcess();

  [[nodiscard]] std::optional<std::string> value(std::string_view name) const;

 private:
  std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace murmel
