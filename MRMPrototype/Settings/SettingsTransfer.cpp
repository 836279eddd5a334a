#include "Settings/SettingsTransfer.h"

#include "Foundation/Json/Json.h"
#include "Settings/SettingsTable.h"

#include <optional>
#include <utility>
#include <vector>

#include <fmt/core.h>

namespace murmel {

namespace {

constexpr std::string_view prefix = "settings.";

std::string transferredName(const SettingRow& row) {
  return std::string(row.key.substr(prefix.size()));
}

/// A value of the JSON as a person would write it; nothing for what no setting has.
std::optional<std::string> textOf(const Json& value) {
  if (const auto boolean = value.boolean()) return *boolean ? "true" : "false";
  return value.text();
}

}  // namespace

std::string exportedSettings(const DefaultsStore& store) {
  auto json = Json::object();
  for (const auto& row : settingsTable()) {
    const auto value = store.value(row.key);
    const auto text = value ? settingText(row, *value) : std::string(row.fallback);
    json[transferredName(row)] = row.kind == SettingRow::Kind::boolean ? Json(text == "true") : Json(text);
  }
  return jsonText(json, JsonCharacters::utf8, 2) + '\n';
}

std::expected<void, std::string> importSettings(DefaultsStore& store, std::string_view json) {
  const auto parsed = parsedJson(json);
  if (parsed.members().empty())
    return std::unexpected(std::string("The file does not hold settings of Murmel."));
  std::vector<std::pair<std::string_view, DefaultsValue>> changes;
  for (const auto& [name, value] : parsed.members()) {
    const auto* const row = settingRow(name);
    if (row == nullptr) return std::unexpected(fmt::format("There is no setting \"{}\".", name));
    const auto text = textOf(value);
    auto setting = text ? settingFromText(*row, *text)
                        : std::expected<DefaultsValue, std::string>(
                              std::unexpected("It is neither text nor true or false."));
    if (!setting)
      return std::unexpected(
          fmt::format("The setting \"{}\" cannot be taken over. {}", name, setting.error()));
    changes.emplace_back(row->key, *std::move(setting));
  }
  for (auto& [key, value] : changes) store.set(key, std::move(value));
  return {};
}

}  // namespace murmel
