#include "Settings/SettingsMigrations.h"

#include "Settings/SettingsKeys.h"
#include "Shortcut/ShortcutChoice.h"
#include "Storage/FileAccess.h"

#include <vector>

#include <fmt/core.h>

namespace murmel::settingsMigration {

namespace {

constexpr std::uint64_t largestPropertyList = 16 << 20;

void storeModel(DefaultsStore& defaults, std::string_view key, SmartLocalModel model) {
  defaults.set(key, std::string(rawValue(model)));
}

ShortcutConfiguration chosenShortcut(const DefaultsStore& defaults) {
  if (const auto stored = storedShortcut(defaults, settingsKey::shortcutConfiguration)) return *stored;
  const auto raw = defaults.get<std::string>(settingsKey::legacyShortcut).value_or(std::string());
  return configuration(fromRawValue<ShortcutChoice>(raw).value_or(ShortcutChoice::functionKey));
}

}  // namespace

std::optional<ShortcutConfiguration> storedShortcut(const DefaultsStore& defaults, std::string_view key) {
  const auto bytes = defaults.get<std::vector<std::uint8_t>>(key);
  if (!bytes) return std::nullopt;
  return ShortcutConfiguration::fromJson({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}

std::optional<SmartLocalModel> storedModel(const DefaultsStore& defaults, std::string_view key) {
  const auto raw = defaults.get<std::string>(key);
  return raw ? smartLocalModelFromStored(*raw) : std::nullopt;
}

void importLegacyPreferences(DefaultsStore& defaults, FileSystem& files, const PropertyListReader& reader,
                             const std::filesystem::path& propertyList) {
  if (defaults.boolean(settingsKey::legacyPreferencesMigration, false)) return;
  const auto bytes = readWholeFile(files, propertyList, largestPropertyList);
  if (bytes && *bytes) {
    const auto members = reader.read(**bytes);
    for (const auto& [key, value] : members.value_or(std::map<std::string, DefaultsValue>{})) {
      if (key.starts_with(settingsKey::prefix) && !defaults.contains(key)) defaults.set(key, value);
    }
  }
  defaults.set(settingsKey::legacyPreferencesMigration, true);
}

ShortcutConfiguration shortcutInForce(const DefaultsStore& defaults, MRMDistributionChannel channel) {
  return ShortcutDistributionPolicy::sanitize(chosenShortcut(defaults), channel);
}

ShortcutConfiguration shortcut(DefaultsStore& defaults, MRMDistributionChannel channel) {
  const auto chosen = chosenShortcut(defaults);
  if (!storedShortcut(defaults, settingsKey::shortcutConfiguration))
    defaults.set(settingsKey::fnDefaultMigration, true);
  const auto sanitized = shortcutInForce(defaults, channel);
  if (sanitized != chosen) {
    if (const auto json = sanitized.toJson()) {
      defaults.set(settingsKey::shortcutConfiguration, std::vector<std::uint8_t>(json->begin(), json->end()));
    }
  }
  return sanitized;
}

SmartLocalModel smartLocalModel(DefaultsStore& defaults, bool fullGemmaCatalog,
                                const ModelIsReady& modelIsReady) {
  constexpr auto standard = SmartLocalModel::gemma4E2B;
  auto stored = storedModel(defaults, settingsKey::smartLocalModel);
  if (!stored && fullGemmaCatalog && defaults.boolean(settingsKey::smartLocalQwenMigration, false) &&
      defaults.boolean(settingsKey::smartFormatting, false)) {
    stored = SmartLocalModel::qwen17;  // what formatting ran with before the choice was stored
  }
  if (!stored) return standard;
  if (!fullGemmaCatalog || *stored == standard || modelIsReady(*stored) != false ||
      modelIsReady(standard) != true)
    return *stored;
  storeModel(defaults, settingsKey::modelMigrationPreviousSelection, *stored);
  storeModel(defaults, settingsKey::smartLocalModel, standard);
  return standard;
}

std::optional<std::string> modelMigrationNotice(const DefaultsStore& defaults) {
  const auto previous = storedModel(defaults, settingsKey::modelMigrationPreviousSelection);
  if (!previous) return std::nullopt;
  return fmt::format(
      "Your previous model, {}, is unavailable. Gemma was selected so you can stay offline. You can download "
      "and "
      "select your previous model in Speech Models.",
      describe(*previous).displayName);
}

bool smartFormatting(DefaultsStore& defaults, SmartLocalModel model, const ModelIsReady& modelIsReady) {
  if (!defaults.boolean(settingsKey::smartLocalQwenMigration, false)) {
    defaults.set(settingsKey::smartFormatting, false);
    defaults.set(settingsKey::smartLocalQwenMigration, true);
    return false;
  }
  return defaults.boolean(settingsKey::smartFormatting, false) && modelIsReady(model) != false;
}

}  // namespace murmel::settingsMigration
