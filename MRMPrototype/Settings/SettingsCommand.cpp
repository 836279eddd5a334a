#include "Settings/SettingsCommand.h"

#include "Foundation/Json/Json.h"
#include "Settings/SettingsKeys.h"
#include "Settings/SettingsMigrations.h"

#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

std::string_view nameOf(const SettingRow& row) {
  return row.key.substr(settingsKey::prefix.size());
}

}  // namespace

SettingsCommand::SettingsCommand(JsonDefaultsStore& store, MRMDistributionChannel channel,
                                 CommandStreams streams)
    : store_(store), channel_(channel), streams_(std::move(streams)) {}

int SettingsCommand::run(std::vector<std::string> arguments) {
  const bool asJson = std::erase(arguments, "--json") > 0;
  const auto verb = arguments.empty() ? std::string("list") : arguments[0];
  const std::size_t operands = verb == "set" ? 2 : verb == "get" || verb == "reset" ? 1 : 0;
  if ((operands == 0 && verb != "list") ||
      (verb == "list" ? arguments.size() > 1 : arguments.size() != operands + 1)) {
    streams_.complain(usage);
    return commandMisused;
  }
  if (verb == "list") return list(asJson);
  const auto* const row = settingRow(arguments[1]);
  if (row == nullptr) {
    streams_.complain(fmt::format(
        "There is no setting \"{}\"; \"murmel settings list\" shows those there are.", arguments[1]));
    return commandMisused;
  }
  if (verb == "get") {
    streams_.print(valueOf(*row) + "\n");
    return finish();
  }
  if (verb == "reset") {
    store_.remove(row->key);
    // Otherwise the older choice would be in force again.
    if (row->key == settingsKey::shortcutConfiguration) store_.remove(settingsKey::legacyShortcut);
    return finish();
  }
  auto value = settingFromText(*row, arguments[2]);
  if (!value) {
    streams_.complain(fmt::format("{}: {}", nameOf(*row), value.error()));
    return commandMisused;
  }
  // Otherwise the reset of a version long ago would undo it at the first start.
  if (row->key == settingsKey::smartFormatting) store_.set(settingsKey::smartLocalQwenMigration, true);
  store_.set(row->key, *std::move(value));
  return finish();
}

int SettingsCommand::list(bool asJson) {
  auto json = Json::object();
  for (const auto& row : settingsTable()) {
    const auto text = valueOf(row);
    if (asJson) {
      json[std::string(nameOf(row))] =
          row.kind == SettingRow::Kind::boolean ? Json(text == "true") : Json(text);
    } else {
      streams_.print(fmt::format("{:<26}{:<24}{}\n", nameOf(row), text, row.meaning));
    }
  }
  if (asJson) streams_.print(jsonText(json, JsonCharacters::utf8, 2) + "\n");
  return finish();
}

std::string SettingsCommand::valueOf(const SettingRow& row) const {
  auto value = store_.value(row.key);
  if (row.key == settingsKey::shortcutConfiguration) {
    if (const auto json = settingsMigration::shortcutInForce(store_, channel_).toJson())
      value = std::vector<std::uint8_t>(json->begin(), json->end());
  }
  if (row.key == settingsKey::smartFormatting &&
      !store_.boolean(settingsKey::smartLocalQwenMigration, false)) {
    value.reset();
  }
  return value ? settingText(row, *value) : std::string(row.fallback);
}

int SettingsCommand::finish() {
  for (auto message : store_.messages()) {
    // The memory of this process ends with the command.
    constexpr std::string_view kept = "hanges are kept in memory.";
    if (message.ends_with(kept)) {
      const auto first = message.size() - kept.size() - 1;
      message.replace(first, message.npos,
                      message[first] == 'C' ? "Nothing was changed." : "nothing was changed.");
    }
    streams_.complain(message);
  }
  return store_.isStored() ? commandDone : commandFailed;
}

}  // namespace murmel
