#include "Shell/TrayWiring.h"

#include "Interface/PlatformWords.h"
#include "Platform/Qt/DesktopNotifications.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

/// The user has been told once that this desktop shows no icon.
constexpr std::string_view toldKey = "interface.toldAboutMissingTray";

struct TrayTexts {
  Q_DECLARE_TR_FUNCTIONS(TrayTexts)
};

}  // namespace

TrayWiring::TrayWiring(Executor& executor, DefaultsStore& defaults, std::string displayName,
                       MenuServices menu)
    : defaults_(defaults),
      displayName_(QString::fromStdString(displayName)),
      menu_(std::move(menu)),
      notices_(roads()),
      trayObserver_(watch_.changed().subscribe([this] { trayChanged(); })),
      patience_(executor.after(panelPatience, [this] { tellWithoutTray(); })) {
  trayChanged();
}

TrayWiring::~TrayWiring() {
  delete window_.data();
}

NoticeRoads TrayWiring::roads() {
  return {
      .tray =
          [this](const QString& title, const QString& text) {
            return watch_.tray() == TrayWatch::Tray::embedded && menu_.showMessage(title, text);
          },
      .desktop =
          [this](const QString& title, const QString& text, std::function<void(bool)> answer) {
            notifyDesktop(displayName_, title, text, std::move(answer));
          },
      .window = [this](const QString& /*title*/, const QString& text) { showInWindow(text); },
  };
}

void TrayWiring::tell(const std::string& sentence, const QString& pasteKeys) {
  notices_.tell(displayName_, inPlatformWords(sentence, pasteKeys));
}

void TrayWiring::tellAtTheEnd(const std::string& sentence, const QString& pasteKeys,
                              std::function<void(bool stays)> answer) {
  notices_.tellAtTheEnd(displayName_, inPlatformWords(sentence, pasteKeys), std::move(answer));
}

void TrayWiring::trayChanged() {
  menu_.setPanelDark(watch_.isPanelDark());
  if (watch_.tray() != TrayWatch::Tray::none) menu_.appear();
}

void TrayWiring::tellWithoutTray() {
  if (watch_.tray() != TrayWatch::Tray::none || defaults_.boolean(toldKey, false)) return;
  defaults_.set(toldKey, true);
  tell(
      "This desktop shows no tray icons. Start Murmel once more to open its windows, or use commands like "
      "“murmel settings”.");
}

void TrayWiring::showInWindow(const QString& text) {
  if (!window_) window_ = new NoticeWindow;
  window_->add(text);
}

QString modelLine(const std::vector<ModelShelfRow>& rows) {
  const auto loading = std::ranges::find(rows, ModelShelfRow::State::downloading, &ModelShelfRow::state);
  if (loading != rows.end() && loading->size.value_or(0) > 0) {
    constexpr std::uint64_t whole = 100;
    return TrayTexts::tr("%1 · downloading, %2 %")
        .arg(inPlatformWords(loading->title))
        .arg(loading->received * whole / *loading->size);
  }
  const auto used = std::ranges::find_if(rows, [](const auto& row) { return row.isSpeech && row.isInUse; });
  return used == rows.end() ? TrayTexts::tr("none yet") : inPlatformWords(used->title);
}

}  // namespace murmel
