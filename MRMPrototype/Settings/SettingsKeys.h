#pragma once

#include <string_view>

/// The keys of the preference store.
namespace murmel::settingsKey {

/// What an import from an earlier version takes over.
inline constexpr std::string_view prefix = "settings.";

inline constexpr std::string_view shortcutConfiguration = "settings.shortcutConfiguration";
inline constexpr std::string_view cancelShortcut = "settings.cancelShortcut";
inline constexpr std::string_view pasteAgainShortcut = "settings.pasteAgainShortcut";
inline constexpr std::string_view singleLanguage = "settings.singleLanguage";
inline constexpr std::string_view selectedLanguages = "settings.selectedLanguages";
inline constexpr std::string_view languageMode = "settings.languageMode";
inline constexpr std::string_view feedbackSound = "settings.feedbackSound";
inline constexpr std::string_view showInDock = "settings.showInDock";
inline constexpr std::string_view smartLocalModel = "settings.smartLocalModel";
inline constexpr std::string_view smartRefinementRouting = "settings.smartRefinementRouting";
inline constexpr std::string_view smartFormatting = "settings.smartFormatting";
inline constexpr std::string_view showRestingIndicator = "settings.showRestingIndicator";
inline constexpr std::string_view processWhileRecording = "settings.processWhileRecording";
inline constexpr std::string_view insertWhileRecording = "settings.insertWhileRecording";
inline constexpr std::string_view removeFillerWords = "settings.removeFillerWords";
inline constexpr std::string_view spokenCommands = "settings.spokenCommands";
inline constexpr std::string_view spaceBetweenDictations = "settings.spaceBetweenDictations";
inline constexpr std::string_view restorePreviousClipboard = "settings.restorePreviousClipboard";
inline constexpr std::string_view automaticUpdateChecks = "settings.automaticUpdateChecks";
inline constexpr std::string_view historyEnabled = "settings.historyEnabled";
inline constexpr std::string_view historyRetention = "settings.historyRetention";
/// Minutes; 0 keeps the recogniser loaded for ever.
inline constexpr std::string_view recogniserIdleMinutes = "settings.recogniserIdleMinutes";
inline constexpr std::string_view forgottenRecordingMinutes = "settings.forgottenRecordingMinutes";
inline constexpr std::string_view cancelWithEscape = "settings.cancelWithEscape";
inline constexpr std::string_view keepFailedRecordings = "settings.keepFailedRecordings";
inline constexpr std::string_view overlayAnchor = "settings.overlayAnchor";
inline constexpr std::string_view modelMigrationPreviousSelection =
    "settings.modelMigrationPreviousSelection";

// Left by earlier versions, only read.
inline constexpr std::string_view legacyShortcut = "settings.shortcut";
inline constexpr std::string_view primaryLanguage = "settings.primaryLanguage";
inline constexpr std::string_view secondaryLanguage = "settings.secondaryLanguage";
inline constexpr std::string_view legacyPersonalVocabulary = "settings.personalVocabulary";

// True once a migration has run.
inline constexpr std::string_view fnDefaultMigration = "settings.fnDefaultMigration";
inline constexpr std::string_view smartLocalQwenMigration = "settings.smartLocalQwenMigration";
inline constexpr std::string_view legacyPreferencesMigration = "migration.productionBundleIdentity.v1";

/// Lets workers run where the system cannot keep them from the user's files.
inline constexpr std::string_view allowUnconfinedWorkers = "security.allowUnconfinedWorkers";

/// Read and written by the onboarding.
inline constexpr std::string_view onboardingCompleted = "onboarding.completed";

}  // namespace murmel::settingsKey
