#include "GalleryData.h"

#include "Settings/SettingsKeys.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <fstream>

namespace murmel::test {

namespace {

/// A Tuesday afternoon.
constexpr WallTime now{std::chrono::sys_days(std::chrono::year(2025) / 3 / 4) + std::chrono::hours(15)};

std::filesystem::path settingsFile(const std::filesystem::path& folder, bool troubles) {
  auto file = folder / "defaults.json";
  if (troubles)
    std::ofstream(file) << "{\"" << settingsKey::modelMigrationPreviousSelection << R"(": "qwen4"})";
  return file;
}

}  // namespace

class GalleryData::NoAutostart final : public Autostart {
 public:
  [[nodiscard]] bool isOn() const override { return isOn_; }
  std::expected<void, std::string> set(bool on) override {
    isOn_ = on;
    return {};
  }

 private:
  bool isOn_ = true;
};

class GalleryData::ExampleMicrophones final : public Microphones, public MicrophoneTrial {
 public:
  void list(std::function<void(std::vector<MicrophoneSource>)> answer) override {
    answer({{"one", "Built-in Audio", true}, {"two", "USB headset", false}});
  }
  void choose(const std::string& /*name*/, std::function<void(bool)> answer) override { answer(true); }
  Registration listen(std::function<void(double)> level, std::function<void(const std::string&)>) override {
    executor_.post([level = std::move(level)] { level(0.62); });
    return Registration([] {});
  }

 private:
  QtExecutor executor_;
};

ExampleChecks::ExampleChecks(bool troubles) {
  const auto failing = troubles ? CheckState::limited : CheckState::works;
  reports_ = {
      {"speech-model", "Speech model", failing, "The speech model is not installed.", "Download"},
      {"microphone", "Microphone", failing, "There is no microphone.", "Sound Settings"},
      {"shortcut", "Global shortcut", failing, "There is no desktop to hear it on.", "Choose Shortcut"},
      {"paste", "Automatic paste", failing, "There is no desktop to paste on.", ""},
      {"key-ring", "Key ring", failing, "The key ring is locked.", ""},
      {"tray", "Tray", failing, "This desktop has none. Use the shortcut or commands like “murmel settings”.",
       ""},
  };
}

std::vector<ModelShelfRow> ExampleShelf::rows() const {
  using enum ModelShelfRow::State;
  return {
      {.name = "base",
       .title = "Whisper base",
       .purpose = "Hears about a hundred languages; about 3 English words in 100 are wrong.",
       .licence = "MIT",
       .isSpeech = true,
       .isPackaged = true,
       .isInUse = true,
       .onDisk = 148'000'000,
       .state = installed},
      {.name = "parakeet",
       .title = "Parakeet TDT 0.6B v3 Q8 · Recommended",
       .purpose = "The best recognition of 25 languages on this computer.",
       .licence = "CC-BY-4.0",
       .isSpeech = true,
       .size = 671'000'000,
       .state = downloading,
       .received = 240'000'000,
       .bytesPerSecond = 5.2e6,
       .remainingSeconds = 83},
      {.name = "gemma-4-e2b",
       .title = "Gemma 4 E2B Q4 · Recommended",
       .purpose = "Punctuation and capitals in many languages.",
       .licence = "Apache-2.0",
       .isInUse = true,
       .canBeChosen = true,
       .size = 2'900'000'000,
       .onDisk = 2'900'000'000,
       .state = installed},
      {.name = "qwen-0.6b",
       .title = "Qwen3 0.6B Q8 · Fast baseline",
       .purpose = "Punctuation and capitals on a small machine.",
       .licence = "Apache-2.0",
       .canBeChosen = true,
       .size = 640'000'000,
       .onDisk = 640'000'000,
       .state = installed},
      {.name = "qwen-4b",
       .title = "Qwen3 4B Q4 · Best quality",
       .licence = "Apache-2.0",
       .size = 2'500'000'000,
       .state = absent,
       .unusable = "Needs 6 GB of free memory; this computer has 4 GB."},
      {.name = "sage",
       .title = "SAGE 95M · Russian",
       .purpose = "Corrects Russian.",
       .licence = "MIT",
       .size = 380'000'000,
       .state = failed,
       .problem = "The connection was lost."},
  };
}

GalleryData::GalleryData(bool troubles)
    : keys_(secrets_, "gallery"),
      autostart_(std::make_unique<NoAutostart>()),
      microphones_(std::make_unique<ExampleMicrophones>()),
      checks_(troubles),
      hearsKeysOnly_(troubles),
      defaults(files_, settingsFile(folder_.path(), troubles)),
      settings({defaults, executor_, queue_, vocabularyFile(files_, keys_, folder_.path()), true,
                [](SmartLocalModel) { return true; }}),
      history(executor_, queue_, historyFile(files_, keys_, folder_.path())) {
  settings.setPersonalVocabulary(
      "postgresql = PostgreSQL\nkay dee ee = KDE\ngit hub = GitHub\n\nno sign here\n");
  settings.setSmartFormatting(true);
  settings.setHistoryEnabled(true);
  const auto add = [this](double hoursAgo, const char* text, const char* language) {
    history.add({Uuid::random(), historyDate(now) - hoursAgo * 3600, SpokenText(text), "base", language,
                 std::nullopt});
  };
  add(75, "The minutes of the meeting go to everybody who was invited, not only to those who came.",
      "English");
  add(27, "Bitte schick mir die Rechnung noch vor dem Wochenende, dann geht sie am Montag raus.", "German");
  add(26, "Не забудь купить хлеб и молоко по дороге домой.", "Russian");
  add(2.5, "Yes.", "English");
  add(0.5,
      "The new shortcut works in every application that I have tried so far, the terminal included. What is "
      "left is the "
      "tablet: there the keys of the pen arrive under other names, and I would rather not guess which of "
      "them somebody "
      "holds while writing.",
      "English");
  const auto settle = [this] {
    while (!history.isSettled()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  };
  settle();
  if (!troubles) return;
  secrets_.failWith(secretStatus::storeFailed);
  settings.setPersonalVocabulary("never = kept");
  add(0, "Not kept.", "English");
  settle();
}

HistoryServices GalleryData::historyServices() {
  return {.history = history,
          .settings = settings,
          .now = [] { return now; },
          .copy = [](const SpokenText&) {},
          .pasteAgain = [](const SpokenText&) {},
          .unlockStorage = [] {}};
}

GalleryData::~GalleryData() = default;

std::function<bool(const ShortcutConfiguration&)> GalleryData::canHear() const {
  if (!hearsKeysOnly_) return {};
  return
      [](const ShortcutConfiguration& shortcut) { return shortcut.kind == ShortcutConfiguration::Kind::key; };
}

FirstRunServices GalleryData::firstRunServices() {
  FirstRunServices services{settings, models, checks_};
  services.microphone = microphones_.get();
  services.microphones = microphones_.get();
  services.shortcutNotice = this->services().shortcutNotice;
  services.canHearShortcut = canHear();
  services.recordShortcut = [](QWidget*, auto) {};
  services.openSoundSettings = [] {};
  services.state = [] { return DictationState(); };
  services.finished = [] {};
  return services;
}

SettingsServices GalleryData::services() {
  SettingsServices services{settings, history, models};
  services.autostart = autostart_.get();
  services.microphone = microphones_.get();
  services.microphones = microphones_.get();
  services.languageNote = [](DictationLanguage language) {
    return std::string(language == DictationLanguage::serbian ? "unknown to the speech model in use" : "");
  };
  services.shortcutNotice = [](const ShortcutConfiguration& shortcut) {
    return std::string(shortcut.kind == ShortcutConfiguration::Kind::modifiersOnly
                           ? "This keyboard does not tell the desktop about Fn. Choose another shortcut."
                           : "");
  };
  services.canHearShortcut = canHear();
  services.hearsFurtherShortcuts = !hearsKeysOnly_;
  services.canKeepOutOfTaskBar = !hearsKeysOnly_;
  services.recordShortcut = [](QWidget*, auto) {};
  services.preparationStatus = [](SmartLocalModel) {
    return std::optional<std::string>("Ready · kept warm in memory");
  };
  for (auto* action :
       {&services.unlockStorage, &services.openHistory, &services.openSetup, &services.openSoundSettings})
    *action = [] {};
  services.exportSettings = [] { return std::string("{}"); };
  services.importSettings = [](const std::string&) { return std::expected<void, std::string>(); };
  return services;
}

AboutServices GalleryData::aboutServices() {
  return {.build = {"Murmel", "1.4.0", "512", "Full edition"},
          .edition = "Ready offline · Models included",
          .diagnostics = [](auto ready) { ready(""); },
          .copy = [](const std::string&, auto) {},
          .openCredits = [] {},
          .tipJar = "https://example.org/tips"};
}

}  // namespace murmel::test
