// Which formatting model is used when models come and go.

#include "Settings/SettingsKeys.h"
#include "SettingsDesk.h"

using FormattingModelSettingsTest = SettingsRepositoryTest;

TEST_F(FormattingModelSettingsTest, AModelThatIsNotReadyGivesWayToOneThatIs) {
  using Model = SmartLocalModel;
  const auto ready = [](auto... models) { return std::set<Model>{models...}; };
  const std::set<Model> none;
  const struct {
    const char* name;
    bool full;
    const char* stored;
    std::set<Model> ready;
    bool migrated, formatting;
    Model expected;
    const char* previous;  // recorded
  } cases[] = {
      {"nothing stored", true, nullptr, none, true, false, Model::gemma4E2B, nullptr},
      {"stored and ready", true, "qwen4", ready(Model::qwen4, Model::gemma4E2B), true, true, Model::qwen4,
       nullptr},
      {"not ready, Gemma is", true, "qwen4", ready(Model::gemma4E2B), true, true, Model::gemma4E2B, "qwen4"},
      {"neither ready", true, "qwen4", none, true, true, Model::qwen4, nullptr},
      {"small catalogue", false, "qwen4", ready(Model::gemma4E2B), true, true, Model::qwen4, nullptr},
      {"formatting before models were stored", true, nullptr, ready(Model::gemma4E2B), true, true,
       Model::gemma4E2B, "qwen17"},
      {"the same, and that model is ready", true, nullptr, ready(Model::qwen17, Model::gemma4E2B), true, true,
       Model::qwen17, nullptr},
      {"formatting from before the reset", true, nullptr, ready(Model::gemma4E2B), false, true,
       Model::gemma4E2B, nullptr},
      {"the other spelling", true, "gemma4E2B", none, true, true, Model::gemma4E2B, nullptr},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    defaults.values.clear();
    defaults.values["settings.smartLocalQwenMigration"] = each.migrated;
    defaults.values["settings.smartFormatting"] = each.formatting;
    if (each.stored != nullptr) defaults.values["settings.smartLocalModel"] = std::string(each.stored);
    fullGemmaCatalog = each.full;
    readyModels = each.ready;
    const auto settings = open();
    EXPECT_EQ(settings.smartLocalModel(), each.expected);
    EXPECT_EQ(storedString("settings.modelMigrationPreviousSelection"),
              each.previous ? each.previous : "(none)");
    EXPECT_EQ(storedString("settings.smartLocalModel"), each.previous            ? "gemma4E2"
                                                        : each.stored != nullptr ? each.stored
                                                                                 : "(none)");
    EXPECT_EQ(settings.modelMigrationNotice().has_value(), each.previous != nullptr);
  }
}

TEST_F(FormattingModelSettingsTest, TheNoticeOfAReplacedModelStaysUntilItIsDismissed) {
  givenMigrated();
  defaults.values["settings.modelMigrationPreviousSelection"] = std::string("qwen4");
  EXPECT_EQ(
      open().modelMigrationNotice(),
      "Your previous model, Qwen3 4B Q4 · Best quality, is unavailable. Gemma was selected so you can stay "
      "offline. You can download and select your previous model in Speech Models.");
  auto settings = open();
  settings.dismissModelMigrationNotice();
  EXPECT_FALSE(settings.modelMigrationNotice());
  EXPECT_FALSE(open().modelMigrationNotice());
}

TEST_F(FormattingModelSettingsTest, FormattingIsResetOnceAndThenNeedsItsModel) {
  defaults.values["settings.smartFormatting"] = true;
  readyModels = {SmartLocalModel::gemma4E2B};
  EXPECT_FALSE(open().smartFormatting());
  EXPECT_EQ(defaults.get<bool>("settings.smartFormatting"), false);
  open().setSmartFormatting(true);
  EXPECT_TRUE(open().smartFormatting());
  readyModels.clear();
  EXPECT_FALSE(open().smartFormatting());
  EXPECT_EQ(defaults.get<bool>("settings.smartFormatting"), true) << "kept for when the model is back";
}

TEST_F(FormattingModelSettingsTest, AnInventoryThatIsNotKnownYetChangesNothingAndIsLookedAtOnceItIs) {
  givenMigrated();
  fullGemmaCatalog = true;
  isInventoryKnown = false;
  defaults.values["settings.smartFormatting"] = true;
  for (const bool isInstalled : {true, false}) {
    defaults.values["settings.smartLocalModel"] = std::string("qwen4");
    readyModels = isInstalled ? std::set{SmartLocalModel::qwen4, SmartLocalModel::gemma4E2B}
                              : std::set{SmartLocalModel::gemma4E2B};
    auto settings = open();
    EXPECT_EQ(settings.smartLocalModel(), SmartLocalModel::qwen4);
    EXPECT_TRUE(settings.smartFormatting());
    isInventoryKnown = true;
    settings.modelInventoryChanged();
    EXPECT_EQ(settings.smartLocalModel(), isInstalled ? SmartLocalModel::qwen4 : SmartLocalModel::gemma4E2B);
    EXPECT_TRUE(settings.smartFormatting());
    readyModels.clear();
    settings.modelInventoryChanged();
    EXPECT_TRUE(settings.smartFormatting()) << "once";
    isInventoryKnown = false;
  }
}
