#include "Settings/SettingsKeys.h"
#include "Settings/SettingsTable.h"
#include "Settings/SettingsTransfer.h"
#include "Support/InMemoryDefaultsStore.h"
#include "Support/Testing.h"

namespace {

TEST(SettingsTransfer, carries_every_setting_and_no_secret_from_one_store_to_another) {
  InMemoryDefaultsStore from;
  from.set(settingsKey::historyEnabled, true);
  from.set(settingsKey::selectedLanguages, std::vector<std::string>{"de", "el"});
  from.set(settingsKey::legacyPersonalVocabulary, std::string("secret = words"));
  from.set(settingsKey::onboardingCompleted, true);
  const auto json = exportedSettings(from);
  EXPECT_EQ(json.find("secret"), std::string::npos);
  EXPECT_EQ(json.find("onboarding"), std::string::npos);
  InMemoryDefaultsStore to;
  ASSERT_TRUE(importSettings(to, json));
  EXPECT_EQ(exportedSettings(to), json);
  for (const auto& row : settingsTable()) EXPECT_TRUE(to.contains(row.key)) << row.key;
}

TEST(SettingsTransfer, takes_over_all_of_a_file_or_nothing) {
  for (const auto* json : {"", "[]", "{}", "null", R"({"feedbackSound": false, "noSuchThing": true})",
                           R"({"feedbackSound": false, "historyRetention": "never"})",
                           R"({"feedbackSound": false, "historyEnabled": 1})"}) {
    InMemoryDefaultsStore store;
    const auto imported = importSettings(store, json);
    EXPECT_FALSE(imported) << json;
    EXPECT_EQ(store.writes, 0) << json;
  }
}

}  // namespace
