#include "Interface/Menu/TrayMenu.h"

#include "Interface/Common/Controls.h"
#include "Interface/Common/Icons.h"
#include "Interface/Menu/TrayIcon.h"
#include "Interface/PlatformWords.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <utility>

namespace murmel {

namespace {

constexpr qsizetype longestExcerpt = 48;

/// The beginning of what was said, in one line.
QString excerpt(const SpokenText& words) {
  const auto line = QString::fromStdString(words.reveal()).simplified();
  return literal(line.size() <= longestExcerpt ? line
                                               : line.left(longestExcerpt - 1).trimmed() + QChar(u'…'));
}

}  // namespace

TrayMenu::TrayMenu(MenuServices services) : services_(std::move(services)) {
  build();
  show(services_.status());
  qApp->installEventFilter(this);
}

QAction* TrayMenu::add(const QString& title, const std::function<void()>& run) {
  auto* action = menu_.addAction(title);
  QObject::connect(action, &QAction::triggered, this, [run] {
    if (run) run();
  });
  return action;
}

void TrayMenu::build() {
  status_ = menu_.addAction(QString());
  status_->setEnabled(false);
  menu_.addSeparator();
  toggle_ = add(tr("Start Dictation"), services_.toggle);
  cancel_ = add(tr("Discard Dictation"), services_.cancel);
  retry_ = add(tr("Try Again"), services_.retry);
  copyLast_ = add(tr("Copy Last Dictation"), services_.copyLast);
  pasteLast_ = add(tr("Paste Last Dictation Again"), services_.pasteLast);
  bringBack_ = add(tr("Bring Back the Clipboard"), services_.bringBackClipboard);
  recent_.setTitle(tr("Copy from History"));
  menu_.addMenu(&recent_);
  QObject::connect(&recent_, &QMenu::aboutToShow, this, [this] { fillRecent(); });
  // Later: what was chosen is told after the menu has closed.
  QObject::connect(
      &recent_, &QMenu::aboutToHide, &recent_, [this] { recent_.clear(); }, Qt::QueuedConnection);
  menu_.addSeparator();
  microphones_.setTitle(tr("Microphone"));
  if (services_.microphones != nullptr) {
    menu_.addMenu(&microphones_);
    microphones_.addAction(tr("Looking…"))->setEnabled(false);
    QObject::connect(&microphones_, &QMenu::aboutToShow, this, [this] {
      services_.microphones->list([this](const auto& sources) { fillMicrophones(sources); });
    });
  }
  shortcut_ = add({}, services_.openShortcut);
  language_ = add({}, services_.openLanguages);
  model_ = add({}, services_.openModels);
  pause_ = menu_.addAction(tr("Pause Murmel"));
  pause_->setCheckable(true);
  QObject::connect(pause_, &QAction::toggled, this, [this](bool on) {
    if (on != shown_.isPaused && services_.pause) services_.pause(on);
  });
  menu_.addSeparator();
  update_ = add({}, services_.openUpdates);
  add(tr("Settings…"), services_.openSettings);
  add(tr("History…"), services_.openHistory);
  add(tr("Setup and Permissions…"), services_.openSetup);
  add(tr("Credits…"), services_.openCredits);
  add(tr("About Murmel"), services_.openAbout);
  add(tr("Quit Murmel"), services_.quit);
}

void TrayMenu::appear() {
  if (!icon_) {
    icon_ = std::make_unique<QSystemTrayIcon>();
    QObject::connect(icon_.get(), &QSystemTrayIcon::activated, this,
                     [this](QSystemTrayIcon::ActivationReason why) {
                       if (why == QSystemTrayIcon::Trigger) services_.toggle();
                     });
    icon_->setContextMenu(&menu_);
    drawIcon();
  }
  icon_->show();
}

void TrayMenu::refresh() {
  if (std::exchange(isRefreshDue_, true)) return;
  QTimer::singleShot(0, this, [this] {
    isRefreshDue_ = false;
    show(services_.status());
  });
}

void TrayMenu::show(const MenuStatus& status) {
  shown_ = status;
  const auto& state = status.state;
  const bool isAtRest = state.which() == DictationState::Case::ready;
  status_->setText(literal(status.isPaused && isAtRest ? tr("Paused: the shortcut is not heard")
                                                       : inPlatformWords(state.title(), status.pasteKeys)));
  toggle_->setText(state.isRecording() ? tr("Stop Dictation") : tr("Start Dictation"));
  toggle_->setEnabled(state.isRecording() || !state.isBusy());
  cancel_->setEnabled(state.isBusy());
  retry_->setEnabled(status.canRetry);
  copyLast_->setEnabled(status.hasLastTranscript);
  pasteLast_->setEnabled(status.hasLastTranscript && !state.isBusy());
  bringBack_->setVisible(status.canBringBackClipboard);
  recent_.menuAction()->setVisible(status.keepsHistory);
  const auto shortcut = status.shortcut.isEmpty() ? inPlatformWords("No shortcut") : status.shortcut;
  shortcut_->setText(literal(tr("Shortcut: %1").arg(shortcut)));
  language_->setText(literal(tr("Language: %1").arg(status.language)));
  model_->setText(literal(tr("Speech Model: %1").arg(status.model)));
  pause_->setChecked(status.isPaused);
  update_->setText(literal(status.update));
  update_->setVisible(!status.update.isEmpty());
  drawIcon();
}

void TrayMenu::fillRecent() {
  recent_.clear();
  for (const auto& words : services_.recent()) {
    QObject::connect(recent_.addAction(excerpt(words)), &QAction::triggered, this,
                     [this, words] { services_.copy(words); });
  }
  if (recent_.isEmpty()) recent_.addAction(tr("Nothing yet"))->setEnabled(false);
}

void TrayMenu::fillMicrophones(const std::vector<MicrophoneSource>& sources) {
  microphones_.clear();
  for (const auto& source : sources) {
    auto* action = microphones_.addAction(literal(QString::fromStdString(source.title)));
    action->setCheckable(true);
    action->setChecked(source.isDefault);
    QObject::connect(action, &QAction::triggered, this, [this, name = source.name] {
      services_.microphones->choose(name, [](bool /*done*/) {});  // the next look shows what came of it
    });
  }
  if (sources.empty()) microphones_.addAction(tr("There is no microphone."))->setEnabled(false);
}

void TrayMenu::setPanelDark(std::optional<bool> dark) {
  isPanelDark_ = dark;
  drawIcon();
}

void TrayMenu::drawIcon() {
  if (!icon_) return;
  constexpr int middle = 128;
  const bool areWindowsDark = QApplication::palette().color(QPalette::Window).lightness() < middle;
  icon_->setIcon(trayIcon(trayLook(shown_.state, shown_.isPaused), isPanelDark_.value_or(areWindowsDark)));
  icon_->setToolTip(QStringLiteral("Murmel · ") + status_->text());
}

bool TrayMenu::showMessage(const QString& title, const QString& text) {
  if (!icon_) return false;
  icon_->showMessage(title, text, applicationIcon());
  return true;
}

bool TrayMenu::eventFilter(QObject* receiver, QEvent* event) {
  if (receiver == qApp && event->type() == QEvent::ApplicationPaletteChange) drawIcon();
  return false;
}

}  // namespace murmel
