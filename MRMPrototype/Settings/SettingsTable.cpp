#include "Settings/SettingsTable.h"

#include "Foundation/Text/Text.h"
#include "History/HistoryRetention.h"
#include "Recognition/DictationLanguage.h"
#include "Refinement/SmartLocalModel.h"
#include "Refinement/SmartRefinementRoutingMode.h"
#include "Settings/OverlayPosition.h"
#include "Settings/SettingsKeys.h"
#include "Shortcut/ShortcutChoice.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace murmel {

namespace {

using Kind = SettingRow::Kind;

constexpr auto mostMinutes = std::int64_t{24} * 60;

template <class E>
std::vector<std::string_view> names() {
  std::vector<std::string_view> all;
  for (const auto each : allCases<E>()) all.push_back(rawValue(each));
  return all;
}

std::vector<SettingRow> makeTable() {
  using namespace settingsKey;
  return {
      {shortcutConfiguration, Kind::shortcut, "functionKey", "the key or chord that starts a dictation"},
      {cancelShortcut, Kind::shortcut, "disabled", "another key that throws a recording away"},
      {pasteAgainShortcut, Kind::shortcut, "disabled", "the key that pastes the last dictation again"},
      {languageMode, Kind::choice, "automaticAll", "how the language is chosen",
       names<DictationLanguageMode>()},
      {singleLanguage, Kind::choice, "en", "the language in mode single", names<DictationLanguage>()},
      {selectedLanguages, Kind::languages, "en,ru", "the languages in mode selected"},
      {feedbackSound, Kind::boolean, "true", "a sound at start and stop"},
      {showInDock, Kind::boolean, "true", "show Murmel in the task bar"},
      {overlayAnchor, Kind::choice, "right", "the screen edge of the recording pill",
       names<OverlayPosition>()},
      {showRestingIndicator, Kind::boolean, "false", "keep the recording pill on the screen at rest"},
      {processWhileRecording, Kind::boolean, "true", "recognize while you still speak"},
      {recogniserIdleMinutes, Kind::minutes, "10",
       "how long the speech model stays in memory after a dictation; 0: for ever"},
      {insertWhileRecording, Kind::boolean, "false", "insert phrases while you still speak"},
      {removeFillerWords, Kind::boolean, "false", "remove filler words"},
      {spokenCommands, Kind::boolean, "false", "“comma”, “new line” and the like are commands"},
      {spaceBetweenDictations, Kind::boolean, "false",
       "a space between two dictations in a row into the same field"},
      {restorePreviousClipboard, Kind::boolean, "true", "put the previous clipboard back after the paste"},
      {smartFormatting, Kind::boolean, "false", "punctuation and capitals by a local language model"},
      {smartLocalModel, Kind::choice, "gemma4E2", "that language model", names<SmartLocalModel>()},
      {smartRefinementRouting, Kind::choice, "automaticByLanguage", "which model corrects Russian",
       names<SmartRefinementRoutingMode>()},
      {historyEnabled, Kind::boolean, "false", "keep an encrypted history of what you dictated"},
      {historyRetention, Kind::choice, "forever", "how long entries of the history are kept",
       names<HistoryRetention>()},
      {cancelWithEscape, Kind::boolean, "true", "Escape throws a recording away"},
      {keepFailedRecordings, Kind::boolean, "true",
       "keep the sound of a failed or cancelled dictation for another try"},
      {forgottenRecordingMinutes, Kind::minutes, "10",
       "end a recording after so long without speech; 0: never"},
      {automaticUpdateChecks, Kind::boolean, "false", "look for a new version once a day"},
      {allowUnconfinedWorkers, Kind::boolean, "false",
       "run helper processes also where the system cannot keep them from your files"},
  };
}

std::optional<ShortcutConfiguration> shortcutFrom(std::string_view text) {
  if (const auto choice = fromRawValue<ShortcutChoice>(text)) return configuration(*choice);
  return ShortcutConfiguration::fromJson(text);
}

std::optional<DefaultsValue> parsed(const SettingRow& row, std::string_view text) {
  switch (row.kind) {
    case Kind::boolean:
      if (text == "true" || text == "on" || text == "yes") return true;
      if (text == "false" || text == "off" || text == "no") return false;
      return std::nullopt;
    case Kind::choice:
      if (std::ranges::find(row.choices, text) == row.choices.end()) return std::nullopt;
      return std::string(text);
    case Kind::minutes: {
      std::int64_t minutes = 0;
      const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), minutes);
      const bool isNumber = error == std::errc() && end == text.data() + text.size();
      if (!isNumber || minutes < 0 || minutes > mostMinutes) return std::nullopt;
      return minutes;
    }
    case Kind::languages: {
      std::vector<std::string> codes;
      for (std::size_t at = 0; at <= text.size();) {
        const auto end = std::min(text.find(',', at), text.size());
        const auto code = text::trimmed(text.substr(at, end - at));
        if (!fromRawValue<DictationLanguage>(code)) return std::nullopt;
        if (std::ranges::find(codes, code) == codes.end()) codes.emplace_back(code);
        at = end + 1;
      }
      return codes;
    }
    case Kind::shortcut: {
      const auto shortcut = shortcutFrom(text);
      const auto json = shortcut ? shortcut->toJson() : std::nullopt;
      if (!json) return std::nullopt;
      return std::vector<std::uint8_t>(json->begin(), json->end());
    }
  }
  return std::nullopt;
}

}  // namespace

std::span<const SettingRow> settingsTable() {
  static const auto table = makeTable();
  return table;
}

const SettingRow* settingRow(std::string_view name) {
  for (const auto& row : settingsTable()) {
    if (row.key == name || row.key.substr(settingsKey::prefix.size()) == name) return &row;
  }
  return nullptr;
}

std::expected<DefaultsValue, std::string> settingFromText(const SettingRow& row, std::string_view text) {
  auto value = parsed(row, text);
  if (value) return *std::move(value);
  switch (row.kind) {
    case Kind::boolean:
      return std::unexpected("It can be true or false.");
    case Kind::choice:
      return std::unexpected(fmt::format("It can be {}.", fmt::join(row.choices, ", ")));
    case Kind::minutes:
      return std::unexpected(fmt::format("It is a number of minutes from 0 to {}.", mostMinutes));
    case Kind::languages:
      return std::unexpected(fmt::format("It is a list of {}.", fmt::join(names<DictationLanguage>(), ", ")));
    case Kind::shortcut:
      break;
  }
  return std::unexpected(
      fmt::format("It can be {}, or the JSON of a shortcut.", fmt::join(names<ShortcutChoice>(), ", ")));
}

std::string settingText(const SettingRow& row, const DefaultsValue& value) {
  if (const auto* boolean = std::get_if<bool>(&value); boolean && row.kind == Kind::boolean)
    return *boolean ? "true" : "false";
  if (const auto* text = std::get_if<std::string>(&value); text && row.kind == Kind::choice) {
    if (parsed(row, *text)) return *text;
  }
  if (const auto* minutes = std::get_if<std::int64_t>(&value); minutes && row.kind == Kind::minutes) {
    auto written = fmt::to_string(*minutes);
    if (parsed(row, written)) return written;
  }
  if (const auto* codes = std::get_if<std::vector<std::string>>(&value);
      codes && row.kind == Kind::languages) {
    std::vector<std::string> known;
    for (const auto& code : *codes) {
      if (fromRawValue<DictationLanguage>(code)) known.push_back(code);
    }
    if (!known.empty()) return fmt::format("{}", fmt::join(known, ","));
  }
  if (const auto* bytes = std::get_if<std::vector<std::uint8_t>>(&value);
      bytes && row.kind == Kind::shortcut) {
    std::string json(bytes->begin(), bytes->end());
    const auto shortcut = ShortcutConfiguration::fromJson(json);
    for (const auto choice : allCases<ShortcutChoice>()) {
      if (shortcut && *shortcut == configuration(choice)) return std::string(rawValue(choice));
    }
    if (shortcut) return json;
  }
  return std::string(row.fallback);
}

}  // namespace murmel
