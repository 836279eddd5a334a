#include "Shell/MainWindows.h"

#include "Interface/About/CreditsWindow.h"
#include "Interface/PlatformWords.h"
#include "MRMUpdateUI/UpdatePanel.h"
#include "Models/SpeechModels.h"
#include "Settings/SettingsTransfer.h"
#include "Shell/LocalRuntimes.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace murmel {

namespace {

/// The sound settings of desktops, the most specific first.
struct SoundSettings {
  const char* program;
  QStringList arguments;
};

const std::vector<SoundSettings>& soundSettings() {
  static const std::vector<SoundSettings> programs{
      {"gnome-control-center", {QStringLiteral("sound")}},
      {"systemsettings", {QStringLiteral("kcm_pulseaudio")}},
      {"pavucontrol-qt", {QStringLiteral("--tab"), QStringLiteral("4")}},
      {"pavucontrol", {QStringLiteral("--tab=4")}},
      {"mate-volume-control", {}},
      {"cinnamon-settings", {QStringLiteral("sound")}},
  };
  return programs;
}

void openInBrowser(const std::string& address) {
  const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
  if (url.scheme() == QStringLiteral("https")) QDesktopServices::openUrl(url);
}

template <class T>
void bringUp(QPointer<T>& window, const std::function<T*()>& make) {
  if (!window) window = make();
  window->present();
}

}  // namespace

bool openSoundSettings() {
  for (const auto& [program, arguments] : soundSettings()) {
    const auto path = QStandardPaths::findExecutable(QString::fromLatin1(program));
    if (!path.isEmpty() && QProcess::startDetached(path, arguments)) return true;
  }
  return false;
}

MainWindows::MainWindows(Parts parts)
    : parts_(std::move(parts)),
      shelf_(
          parts_.process.executor, parts_.process.clock, parts_.models, parts_.storage.settings,
          [this](const CatalogModel& model) { return whyUnusable(model, modelMachine(parts_.installation)); },
          [this] { return packagedModels(); }),
      trialInput_(parts_.process.executor, {parts_.installation.build.displayName, std::nullopt}),
      microphone_(parts_.process.executor, trialInput_, parts_.desktop.microphoneAuthorization,
                  parts_.installation.folders.temporary),
      autostart_(parts_.installation.folders.configuration,
                 {parts_.installation.identifier, parts_.installation.build.displayName,
                  parts_.installation.folders.executable}) {}

MainWindows::~MainWindows() {
  delete settings_.data();
  delete history_.data();
  delete about_.data();
  delete credits_.data();
}

SettingsServices MainWindows::settingsServices() {
  SettingsServices services{parts_.storage.settings, parts_.storage.history, shelf_};
  services.autostart = &autostart_;
  services.microphone = &microphone_;
  services.microphones = &parts_.microphones;
  services.shortcutNotice = parts_.shortcutNotice;
  services.recordShortcut = parts_.recordShortcut;
  services.hearsFurtherShortcuts = parts_.desktop.shortcuts.hearsEveryKey();
  services.canHearShortcut = parts_.canHearShortcut;
  services.tellsOfRelease = parts_.tellsOfRelease;
  services.canKeepOutOfTaskBar =
      parts_.session != SessionKind::sway && parts_.session != SessionKind::wlroots;
  services.preparationStatus = [this](SmartLocalModel model) -> std::optional<std::string> {
    const auto status = parts_.speech.refiners.preparationStatus(model);
    return status ? std::optional(std::string(*status)) : std::nullopt;
  };
  services.preparationFailure = [this](SmartLocalModel model) {
    auto& refiners = parts_.speech.refiners;
    const auto failure = refiners.failure(model);
    return failure.empty() ? refiners.russianFailure() : failure;
  };
  services.preparationChanged = &parts_.speech.refiners.onPreparationChange();
  services.unlockStorage = parts_.unlockStorage;
  services.updatesUnavailable = parts_.updater.whyNot();
  if (services.updatesUnavailable.empty())
    services.makeUpdatePanel = [this] {
      return new UpdatePanel(parts_.updater, packageUpdateCommand(parts_.installation.identifier));
    };
  services.exportSettings = [this] { return exportedSettings(parts_.storage.defaults); };
  services.importSettings = [this](const std::string& json) {
    const auto imported = importSettings(parts_.storage.defaults, json);
    if (imported) parts_.storage.settings.reload();
    return imported;
  };
  services.languageNote = [this](DictationLanguage language) { return languageNote(language); };
  services.openHistory = [this] { openHistory(); };
  services.openSetup = parts_.openSetup;
  services.openSoundSettings = [] { openSoundSettings(); };
  return services;
}

std::vector<ModelShelfRow> MainWindows::packagedModels() const {
  std::vector<ModelShelfRow> rows;
  for (const auto& model : packagedSpeechModels(parts_.installation.folders.resources)) {
    const auto finding = parts_.models.inventory->look(model, model.folder);
    if (finding == ModelInventory::Finding::missing) continue;
    ModelShelfRow row{.name = std::string(model.engine->identifier),
                      .title = std::string(model.engine->title),
                      .purpose = std::string(model.engine->purpose),
                      .licence = std::string(model.engine->license)};
    row.isSpeech = true;
    row.isPackaged = true;
    row.isInUse = parts_.models.speech->state() == SpeechModelState::ready &&
                  parts_.models.speech->activeModelURL() == model.folder;
    row.state = finding == ModelInventory::Finding::wrong ? ModelShelfRow::State::damaged
                                                          : ModelShelfRow::State::installed;
    rows.push_back(std::move(row));
  }
  return rows;
}

std::string MainWindows::languageNote(DictationLanguage language) const {
  const auto folder = parts_.models.speech->activeModelURL();
  const auto models =
      speechModels(modelStore(parts_.installation.folders), parts_.installation.folders.resources);
  const auto model = std::ranges::find(models, folder, &SpeechModel::folder);
  if (model == models.end() || knowsLanguage(*model->engine, rawValue(language))) return {};
  return "unknown to the speech model in use";
}

HistoryServices MainWindows::historyServices() {
  return {.history = parts_.storage.history,
          .settings = parts_.storage.settings,
          .now = [this] { return parts_.process.clock.wallNow(); },
          .copy = [this](const SpokenText& text) { parts_.copy(text, {}); },
          .pasteAgain =
              [this](const SpokenText& text) {
                // Our window has to go first, or it would be what is pasted into; the text may be its own.
                const SpokenText words = text;  // NOLINT(performance-unnecessary-copy-initialization)
                if (history_) history_->close();
                parts_.pasteAgain(words);
              },
          .unlockStorage = parts_.unlockStorage};
}

AboutServices MainWindows::aboutServices() {
  return {
      .build = parts_.installation.build,
      .edition = std::string(editionTagline(parts_.installation.edition)),
      .diagnostics = parts_.diagnostics,
      .copy = [this](const std::string& text, auto told) { parts_.copy(SpokenText(text), std::move(told)); },
      .openCredits = [this] { openCredits(); },
      .tipJar = parts_.installation.tipJar,
      .openAddress = &openInBrowser};
}

SettingsWindow& MainWindows::settings() {
  if (!settings_) {
    settings_ = new SettingsWindow(settingsServices());
    settings_->setAttribute(Qt::WA_DeleteOnClose);
  }
  return *settings_;
}

void MainWindows::openSettings(SettingsWindow::Page page) {
  settings().present(page);
}

void MainWindows::openRequiredModel(const QString& why) {
  settings().presentRequiredModel(why);
}

void MainWindows::openHistory() {
  bringUp<HistoryWindow>(history_, [this] { return new HistoryWindow(historyServices()); });
}

void MainWindows::openAbout() {
  bringUp<AboutWindow>(about_, [this] { return new AboutWindow(aboutServices()); });
}

void MainWindows::openCredits() {
  bringUp<CreditsWindow>(
      credits_, [this] { return new CreditsWindow(readCredits(parts_.installation.folders.resources)); });
}

bool MainWindows::isAnyVisible() const {
  // What the window system shows, not what was asked of it.
  const auto isSeen = [](const QWidget* window) {
    return window != nullptr && window->windowHandle() != nullptr && window->windowHandle()->isExposed() &&
           !window->isMinimized();
  };
  return isSeen(settings_) || isSeen(history_);
}

}  // namespace murmel
