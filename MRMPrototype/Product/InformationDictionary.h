#pragma once

#include <expected>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// What the build wrote about itself into `Info.json` of the resources folder: string keys and values.
class InformationDictionary {
 public:
  InformationDictionary() = default;
  explicit InformationDictionary(std::map<std::string, std::string, std::less<>> values)
      : values_(std::move(values)) {}

  /// Reads a JSON object; values that are not strings are left out. The error is one line for the user.
  static std::expected<InformationDictionary, std::string> read(const std::filesystem::path& file);

  [[nodiscard]] std::optional<std::string> string(std::string_view key) const;

 private:
  std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace murmel
