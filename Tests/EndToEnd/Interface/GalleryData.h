#pragma once

#include "Foundation/Async/SerialQueue.h"
#include "History/HistoryRepository.h"
#include "Interface/About/AboutWindow.h"
#include "Interface/FirstRun/FirstRunServices.h"
#include "Interface/History/HistoryWindow.h"
#include "Interface/Models/ModelShelf.h"
#include "Interface/Settings/SettingsServices.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Platform/Linux/Files/PosixFileSystem.h"
#include "Platform/Qt/QtExecutor.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsRepository.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Support/TemporaryFolder.h"

namespace murmel::test {

/// Models in every state that a row can show.
class ExampleShelf final : public ModelShelf {
 public:
  [[nodiscard]] std::vector<ModelShelfRow> rows() const override;
  [[nodiscard]] Signal<>& changed() override { return changed_; }
  [[nodiscard]] bool isInstalled(SmartLocalModel model) const override {
    return model == SmartLocalModel::gemma4E2B;
  }
  [[nodiscard]] std::string downloadsUnavailable() const override { return {}; }
  void download(const std::string& name) override { calls.push_back("download " + name); }
  void pause(const std::string& name) override { calls.push_back("pause " + name); }
  void verify(const std::string& name) override { calls.push_back("verify " + name); }
  void remove(const std::string& name) override { calls.push_back("remove " + name); }
  void choose(const std::string& name) override { calls.push_back("choose " + name); }

  std::vector<std::string> calls;

 private:
  Signal<> changed_;
};

/// Checks of which some fail.
class ExampleChecks final : public DesktopChecks {
 public:
  explicit ExampleChecks(bool troubles);
  [[nodiscard]] const std::vector<CheckReport>& reports() const override { return reports_; }
  void run() override {}
  void cure(const std::string& /*identifier*/) override {}
  [[nodiscard]] Signal<>& didChange() override { return didChange_; }

 private:
  std::vector<CheckReport> reports_;
  Signal<> didChange_;
};

/// What the windows show when they are shown as an example: real repositories over files of their own. Needs
/// a QApplication.
class GalleryData {
 public:
  /// `troubles`: with a key ring that fails, a model that was replaced, and a desktop that hears no
  /// modifiers.
  explicit GalleryData(bool troubles);
  ~GalleryData();

  [[nodiscard]] SettingsServices services();
  [[nodiscard]] HistoryServices historyServices();
  [[nodiscard]] static AboutServices aboutServices();
  [[nodiscard]] FirstRunServices firstRunServices();
  /// What the settings file holds, to somebody who reads it now.
  [[nodiscard]] std::optional<DefaultsValue> stored(std::string_view key) {
    return JsonDefaultsStore(files_, folder_.path() / "defaults.json").value(key);
  }

  [[nodiscard]] std::function<bool(const ShortcutConfiguration&)> canHear() const;

 private:
  class NoAutostart;
  class ExampleMicrophones;

  TemporaryFolder folder_;
  PosixFileSystem files_;
  FakeSecretStore secrets_;
  KeychainEncryptionKeyStore keys_;
  QtExecutor executor_;
  SerialQueue queue_{executor_, "gallery"};
  std::unique_ptr<Autostart> autostart_;
  std::unique_ptr<ExampleMicrophones> microphones_;
  ExampleChecks checks_;
  bool hearsKeysOnly_;

 public:
  JsonDefaultsStore defaults;  ///< in a file of its own, as the user's
  SettingsRepository settings;
  HistoryRepository history;
  ExampleShelf models;
};

}  // namespace murmel::test
