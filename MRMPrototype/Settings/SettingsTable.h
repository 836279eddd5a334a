#pragma once

#include "Platform/DefaultsValue.h"

#include <expected>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// One setting as a person names and changes it, in a text file or on the command line. What migrations
/// remember is none.
struct SettingRow {
  enum class Kind { boolean, choice, minutes, languages, shortcut };

  std::string_view key;
  Kind kind = Kind::boolean;
  std::string_view fallback;  ///< in force while nothing is stored, as text
  std::string_view meaning;
  std::vector<std::string_view> choices{};  ///< of `choice`
};

/// Every setting, in the order in which a person looks for them.
std::span<const SettingRow> settingsTable();
/// By the key, with or without its "settings."; nullptr when there is none.
const SettingRow* settingRow(std::string_view name);

/// A value as a person writes it: "true", a choice, whole minutes, languages separated by commas, a
/// ready-made shortcut's name or a shortcut's JSON. The error says what is possible.
std::expected<DefaultsValue, std::string> settingFromText(const SettingRow& row, std::string_view text);
/// The other way round. A value that the setting cannot have gives the fallback, as it does when it is read.
std::string settingText(const SettingRow& row, const DefaultsValue& value);

}  // namespace murmel
