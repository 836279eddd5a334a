#pragma once

#include "Platform/DefaultsValue.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// The text form of preferences: one JSON object, a member a key. Booleans, numbers, strings and arrays of
/// strings stand for themselves; a double has a point or an exponent, an integer has not; bytes are {"$data":
/// base64}. Members of any other form are kept as they are.
class DefaultsDocument {
 public:
  DefaultsDocument();
  ~DefaultsDocument();
  DefaultsDocument(DefaultsDocument&&) noexcept;
  DefaultsDocument& operator=(DefaultsDocument&&) noexcept;

  /// The error says, for a person, what is wrong and in which line and column: `text` is not a JSON object,
  /// nests deeper than 64 levels, or names a key twice.
  static std::expected<DefaultsDocument, std::string> parse(std::string_view text);
  /// With line breaks, so that a person can read it.
  [[nodiscard]] std::string text() const;

  [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const;
  [[nodiscard]] bool contains(std::string_view key) const;
  void set(std::string_view key, const DefaultsValue& value);
  void remove(std::string_view key);

 private:
  struct Members;
  std::unique_ptr<Members> members_;
};

}  // namespace murmel
