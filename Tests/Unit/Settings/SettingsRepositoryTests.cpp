#include "Foundation/Json/Json.h"
#include "Settings/SettingsKeys.h"
#include "Settings/SettingsTransfer.h"
#include "SettingsDesk.h"
#include "Shortcut/ShortcutChoice.h"
#include "Support/FileBytes.h"

namespace {

using Language = DictationLanguage;

class FixedPropertyList final : public PropertyListReader {
 public:
  [[nodiscard]] std::optional<std::map<std::string, DefaultsValue>> read(
      std::span<const std::uint8_t> bytes) const override {
    if (textOf(bytes) != "plist") return std::nullopt;
    return members;
  }
  std::map<std::string, DefaultsValue> members;
};

}  // namespace

TEST_F(SettingsRepositoryTest, GivesWhatIsStoredAndElseTheDefaultsThatAnExportNames) {
  readyModels = {SmartLocalModel::qwen4};
  const auto expectAgreement = [&] {
    const auto settings = open();
    std::string languages;
    for (const auto each : settings.selectedLanguages())
      languages += (languages.empty() ? "" : ",") + std::string(rawValue(each));
    const Json given{{"singleLanguage", rawValue(settings.singleLanguage())},
                     {"selectedLanguages", languages},
                     {"languageMode", rawValue(settings.languageMode())},
                     {"feedbackSound", settings.playFeedbackSound()},
                     {"showInDock", settings.showInDock()},
                     {"smartLocalModel", rawValue(settings.smartLocalModel())},
                     {"smartRefinementRouting", rawValue(settings.smartRefinementRouting())},
                     {"smartFormatting", settings.smartFormatting()},
                     {"processWhileRecording", settings.processWhileRecording()},
                     {"insertWhileRecording", settings.insertWhileRecording()},
                     {"removeFillerWords", settings.removeFillerWords()},
                     {"restorePreviousClipboard", settings.restorePreviousClipboard()},
                     {"historyEnabled", settings.historyEnabled()},
                     {"historyRetention", rawValue(settings.historyRetention())},
                     {"overlayAnchor", rawValue(settings.overlayPosition())}};
    const auto exported = parsedJson(exportedSettings(defaults));
    for (const auto& [name, value] : given.members()) EXPECT_EQ(exported[name], value) << name;
    return settings.shortcut();
  };
  EXPECT_EQ(expectAgreement(), configuration(ShortcutChoice::functionKey));
  EXPECT_EQ(dock.changes, 0);
  // Nothing but the marks of what has run.
  EXPECT_EQ(defaults.values, (decltype(defaults.values){{"settings.fnDefaultMigration", true},
                                                        {"settings.smartFormatting", false},
                                                        {"settings.smartLocalQwenMigration", true}}));
  ASSERT_TRUE(importSettings(defaults, R"({"shortcutConfiguration": "optionSpace", "singleLanguage": "el",
      "selectedLanguages": "de,uk", "languageMode": "single", "feedbackSound": false, "showInDock": false,
      "smartLocalModel": "qwen4", "smartRefinementRouting": "selectedMultilingualModel", "smartFormatting": true,
      "processWhileRecording": false, "insertWhileRecording": true, "removeFillerWords": true,
      "restorePreviousClipboard": false, "historyEnabled": true, "historyRetention": "oneWeek",
      "overlayAnchor": "top"})"));
  EXPECT_EQ(expectAgreement(), configuration(ShortcutChoice::optionSpace));
  // The keys are a promise to other versions.
  for (const auto* key :
       {"singleLanguage", "selectedLanguages", "languageMode", "smartLocalModel", "overlayAnchor",
        "smartRefinementRouting", "historyRetention", "feedbackSound", "showInDock", "processWhileRecording",
        "restorePreviousClipboard", "smartFormatting", "historyEnabled", "insertWhileRecording",
        "removeFillerWords", "shortcutConfiguration"}) {
    EXPECT_TRUE(defaults.contains("settings." + std::string(key))) << key;
  }
}

TEST_F(SettingsRepositoryTest, ValuesOfAnotherTypeOrNameReadAsAbsent) {
  givenMigrated();
  defaults.values["settings.restorePreviousClipboard"] = std::string("false");
  defaults.values["settings.historyEnabled"] = std::int64_t{1};
  defaults.values["settings.historyRetention"] = std::string("twoYears");
  defaults.values["settings.overlayAnchor"] = true;
  defaults.values["settings.languageMode"] = std::string("Single");
  defaults.values["settings.shortcutConfiguration"] = std::string("{}");
  const auto settings = open();
  EXPECT_TRUE(settings.restorePreviousClipboard());
  EXPECT_FALSE(settings.historyEnabled());
  EXPECT_EQ(settings.historyRetention(), HistoryRetention::forever);
  EXPECT_EQ(settings.overlayPosition(), OverlayPosition::right);
  EXPECT_EQ(settings.languageMode(), DictationLanguageMode::automaticAll);
  EXPECT_EQ(settings.shortcut(), configuration(ShortcutChoice::functionKey));
}

TEST_F(SettingsRepositoryTest, TheShortcutComesFromTheStoreTheOlderChoiceOrTheChannel) {
  const auto stored = [&](const ShortcutConfiguration& shortcut) {
    const auto json = *shortcut.toJson();
    defaults.values["settings.shortcutConfiguration"] = std::vector<std::uint8_t>(json.begin(), json.end());
  };
  defaults.values["settings.shortcut"] = std::string("controlSpace");
  EXPECT_EQ(open().shortcut(), configuration(ShortcutChoice::controlSpace));
  EXPECT_EQ(defaults.get<bool>("settings.fnDefaultMigration"), true);
  EXPECT_FALSE(defaults.contains("settings.shortcutConfiguration")) << "nothing to repair";

  defaults.values["settings.shortcutConfiguration"] = bytesOf("{\"kind\":\"unknown\"}");
  EXPECT_EQ(open().shortcut(), configuration(ShortcutChoice::controlSpace));

  defaults.values.erase("settings.fnDefaultMigration");
  stored(configuration(ShortcutChoice::doubleTapOption));
  EXPECT_EQ(open().shortcut(), configuration(ShortcutChoice::doubleTapOption));
  EXPECT_FALSE(defaults.contains("settings.fnDefaultMigration"));

  channel = MRMDistributionChannel::appStore;
  EXPECT_EQ(open().shortcut(), configuration(ShortcutChoice::commandShiftD));
  channel = MRMDistributionChannel::direct;
  EXPECT_EQ(open().shortcut(), configuration(ShortcutChoice::commandShiftD)) << "the repair was stored";
}

TEST_F(SettingsRepositoryTest, ASetShortcutIsMadeServableAndAnnounced) {
  auto settings = open();
  int announced = 0;
  const auto observer = settings.shortcutDidChange().subscribe([&] { ++announced; });
  auto commandAlone = configuration(ShortcutChoice::controlKey);
  commandAlone.modifierRawValue = 0x100000;
  settings.setShortcut(commandAlone);
  EXPECT_EQ(settings.shortcut(), configuration(ShortcutChoice::functionKey));
  settings.setShortcut(configuration(ShortcutChoice::disabled));
  EXPECT_EQ(announced, 2);
  EXPECT_EQ(open().shortcut(), configuration(ShortcutChoice::disabled));
}

TEST_F(SettingsRepositoryTest, LanguagesComeFromTheListElseFromTheEarlierPair) {
  const struct {
    std::optional<Strings> list;
    std::vector<Language> expected;
  } cases[] = {
      {Strings{"xx", "de"}, {Language::german}},
      {Strings{"fr", "en"}, {Language::french, Language::english}},
      {Strings{"xx"}, {Language::polish, Language::russian}},
      {Strings{}, {Language::polish, Language::russian}},
      {std::nullopt, {Language::polish, Language::russian}},
  };
  defaults.values["settings.primaryLanguage"] = std::string("pl");
  for (const auto& [list, expected] : cases) {
    defaults.values.erase("settings.selectedLanguages");
    if (list) defaults.values["settings.selectedLanguages"] = *list;
    EXPECT_EQ(open().selectedLanguages(), expected);
  }
  EXPECT_EQ(open().singleLanguage(), Language::polish);
}

TEST_F(SettingsRepositoryTest, OnlyASingleLanguageIsForcedOnTheRecogniser) {
  auto settings = open();
  settings.setSingleLanguage(Language::german);
  const auto labels = [&] {
    return Strings{settings.workerLanguageCode().value_or("(none)"), settings.historyLanguageLabel(),
                   settings.languageProfileSummary()};
  };
  EXPECT_EQ(labels(), (Strings{"(none)", "Automatic", "All 28 languages, recognized automatically"}));
  settings.setLanguageMode(DictationLanguageMode::selected);
  EXPECT_EQ(labels(), (Strings{"(none)", "English, Russian", "English, Russian"}));
  settings.setLanguageMode(DictationLanguageMode::single);
  EXPECT_EQ(labels(), (Strings{"de", "German", "German only"}));
}

TEST_F(SettingsRepositoryTest, TogglesLanguagesButKeepsTheLastOne) {
  auto settings = open();
  settings.toggleLanguage(Language::german);
  settings.toggleLanguage(Language::english);
  EXPECT_EQ(settings.selectedLanguages(), (std::vector{Language::russian, Language::german}));
  EXPECT_TRUE(settings.isLanguageSelected(Language::german));
  settings.toggleLanguage(Language::russian);
  settings.toggleLanguage(Language::german);
  EXPECT_EQ(settings.selectedLanguages(), std::vector{Language::german});
}

TEST_F(SettingsRepositoryTest, AnEditOfTheStoreIsTakenOverAndTold) {
  auto settings = open();
  std::vector<SettingsProperty> told;
  const auto observer = settings.didChange().subscribe([&](SettingsProperty each) { told.push_back(each); });
  defaults.values["settings.historyEnabled"] = true;
  defaults.values["settings.showInDock"] = false;
  settings.reload();
  EXPECT_TRUE(settings.historyEnabled());
  EXPECT_EQ(dock.policy, ActivationPolicy::accessory);
  EXPECT_EQ(told, (std::vector{SettingsProperty::showInDock, SettingsProperty::historyEnabled}));
}

TEST_F(SettingsRepositoryTest, TheDockFollowsItsSwitchOnlyWhenItDiffers) {
  auto settings = open();
  settings.setShowInDock(true);
  EXPECT_EQ(dock.changes, 0);
  settings.setShowInDock(false);
  EXPECT_EQ(dock.policy, ActivationPolicy::accessory);
  settings.setShowInDock(false);
  EXPECT_EQ(dock.changes, 1);
}

TEST_F(SettingsRepositoryTest, ObserversHearOfAChangeBeforeAndAfterAndNotOfNone) {
  auto settings = open();
  Strings seen;
  const auto before = settings.willChange().subscribe([&](SettingsProperty property) {
    seen.push_back((property == SettingsProperty::historyEnabled ? "history was " : "other was ") +
                   std::to_string(settings.historyEnabled()));
  });
  const auto after = settings.didChange().subscribe(
      [&](SettingsProperty) { seen.push_back("is " + std::to_string(settings.historyEnabled())); });
  settings.setHistoryEnabled(true);
  settings.setHistoryEnabled(true);
  EXPECT_EQ(seen, (Strings{"history was 0", "is 1"}));
}

TEST_F(SettingsRepositoryTest, TakesOverTheVocabularyThatStoodInThePreferences) {
  defaults.values["settings.personalVocabulary"] = std::string("old = Old");
  EXPECT_EQ(open().personalVocabulary(), "old = Old");
  EXPECT_FALSE(defaults.contains("settings.personalVocabulary"));
  EXPECT_TRUE(std::filesystem::exists(sealed));
  defaults.values["settings.personalVocabulary"] = std::string("later");
  EXPECT_EQ(open().personalVocabulary(), "old = Old") << "the sealed file wins";

  open().setPersonalVocabulary("");
  EXPECT_FALSE(std::filesystem::exists(sealed));
  EXPECT_EQ(secrets.accounts(service), Strings{});
  defaults.values["settings.personalVocabulary"] = std::string();
  EXPECT_EQ(open().personalVocabulary(), "");
  EXPECT_FALSE(defaults.contains("settings.personalVocabulary"));

  defaults.values["settings.personalVocabulary"] = std::string("not lost");
  secrets.setLocked(true);
  const auto settings = open();
  EXPECT_EQ(settings.vocabularyStorageStatus(), SecureStorageStatus::unavailable);
  EXPECT_EQ(storedString("settings.personalVocabulary"), "not lost");
  secrets.setLocked(false);
  EXPECT_EQ(open().personalVocabulary(), "not lost");
}

TEST_F(SettingsRepositoryTest, AnUnreadableVocabularyIsNeverWrittenOver) {
  open().setPersonalVocabulary("precious = Precious");
  const auto stored = contentsOf(sealed);
  secrets.setLocked(true);
  auto settings = open();
  EXPECT_EQ(settings.personalVocabulary(), "");
  EXPECT_EQ(settings.vocabularyStorageStatus(), SecureStorageStatus::unavailable);
  secrets.setLocked(false);
  settings.setPersonalVocabulary("typed = Typed");
  EXPECT_EQ(settings.personalVocabulary(), "typed = Typed");
  EXPECT_EQ(settings.vocabularyStorageStatus(), SecureStorageStatus::unavailable);
  EXPECT_EQ(contentsOf(sealed), stored);
  settings.reloadPersonalVocabulary();
  EXPECT_EQ(settings.personalVocabulary(), "precious = Precious\ntyped = Typed");
  EXPECT_EQ(open().personalVocabulary(), "precious = Precious\ntyped = Typed");
  EXPECT_EQ(settings.vocabularyStorageStatus(), SecureStorageStatus::available);

  ASSERT_TRUE(vocabularyFile(files, keys, folder.path()).write(bytesOf("\xff\xfe")));
  EXPECT_EQ(open().vocabularyStorageStatus(), SecureStorageStatus::unavailable) << "not text";
}

TEST_F(SettingsRepositoryTest, AVocabularyThatCannotBeStoredStaysInMemory) {
  auto settings = open();
  files.failAlways("write", ENOSPC);
  settings.setPersonalVocabulary("kept = Kept");
  EXPECT_EQ(settings.personalVocabulary(), "kept = Kept");
  EXPECT_EQ(settings.vocabularyStorageStatus(), SecureStorageStatus::unavailable);
  files.failNever();
  settings.setPersonalVocabulary("kept = Kept");
  EXPECT_EQ(settings.vocabularyStorageStatus(), SecureStorageStatus::available);
  EXPECT_EQ(open().personalVocabulary(), "kept = Kept");
}

TEST_F(SettingsRepositoryTest, ImportsTheEarlierPreferencesOnceAndOverwritesNothing) {
  const auto plist = settingsMigration::legacyPropertyList(folder.path());
  FixedPropertyList reader;
  reader.members = {{"settings.historyEnabled", true},
                    {"settings.feedbackSound", false},
                    {"onboarding.completed", true},
                    {"settings.selectedLanguages", Strings{"de"}}};
  defaults.values["settings.feedbackSound"] = true;
  std::filesystem::create_directories(plist.parent_path());
  writeFile(plist, "plist");
  settingsMigration::importLegacyPreferences(defaults, files, reader, plist);
  EXPECT_EQ(defaults.get<bool>("settings.historyEnabled"), true);
  EXPECT_EQ(defaults.get<bool>("settings.feedbackSound"), true);
  EXPECT_EQ(defaults.get<Strings>("settings.selectedLanguages"), Strings{"de"});
  EXPECT_FALSE(defaults.contains("onboarding.completed"));
  EXPECT_EQ(defaults.get<bool>("migration.productionBundleIdentity.v1"), true);
  reader.members["settings.later"] = true;
  settingsMigration::importLegacyPreferences(defaults, files, reader, plist);
  EXPECT_FALSE(defaults.contains("settings.later"));

  InMemoryDefaultsStore fresh;
  settingsMigration::importLegacyPreferences(fresh, files, reader, folder.path() / "absent.plist");
  EXPECT_EQ(fresh.values.size(), 1U);
}
