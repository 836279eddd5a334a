#pragma once

#include "Platform/FileSystem.h"
#include "Platform/PropertyListReader.h"
#include "Refinement/SmartLocalModel.h"
#include "Settings/DefaultsStore.h"
#include "Shortcut/ShortcutDistributionPolicy.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// The one-time changes that bring the preferences of earlier versions up to date. Each runs on every start
/// and knows by itself whether there is anything to do.
namespace murmel::settingsMigration {

/// Whether a model's file is installed and verified; nothing while that is not known yet.
using ModelIsReady = std::function<std::optional<bool>(SmartLocalModel)>;

/// Takes over the preferences of the earlier application identity, without touching keys that are set. Runs
/// once, before the repository is made.
void importLegacyPreferences(DefaultsStore& defaults, FileSystem& files, const PropertyListReader& reader,
                             const std::filesystem::path& propertyList);

/// Where the earlier application identity kept its preferences, below the user's configuration folder.
inline std::filesystem::path legacyPropertyList(const std::filesystem::path& configurationFolder) {
  return configurationFolder / "Preferences" / "app.mrm.prototype.plist";
}

/// The shortcut as stored, else the one that the older single choice means, as the channel can serve it.
ShortcutConfiguration shortcutInForce(const DefaultsStore& defaults, MRMDistributionChannel channel);
/// The same, and brings what is stored up to date.
ShortcutConfiguration shortcut(DefaultsStore& defaults, MRMDistributionChannel channel);

/// Nothing when there is none, or none that can be understood.
std::optional<ShortcutConfiguration> storedShortcut(const DefaultsStore& defaults, std::string_view key);

std::optional<SmartLocalModel> storedModel(const DefaultsStore& defaults, std::string_view key);

/// The model as stored; with the full catalogue one that is not installed gives way to one that is. What is
/// not known yet changes nothing.
SmartLocalModel smartLocalModel(DefaultsStore& defaults, bool fullGemmaCatalog,
                                const ModelIsReady& modelIsReady);

/// What to tell the user about a model that gave way.
std::optional<std::string> modelMigrationNotice(const DefaultsStore& defaults);

/// Off once for everybody who comes from a version before the present models; later as stored, unless `model`
/// is known not to be ready.
bool smartFormatting(DefaultsStore& defaults, SmartLocalModel model, const ModelIsReady& modelIsReady);

}  // namespace murmel::settingsMigration
