#include "Interface/TrayMenu.h"

#include "Interface/PlatformWords.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

namespace murmel {

namespace {

enum class Look { rest, recording, working };

Look lookOf(const DictationState& state) {
  if (state.isRecording()) return Look::recording;
  return state.isBusy() ? Look::working : Look::rest;
}

/// A microphone, filled while it records. Drawn, so that it is sharp at every size and needs no file.
QIcon iconFor(Look look) {
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 24.0, size / 24.0);
    const QColor colour = look == Look::recording ? QColor(235, 70, 70)
                          : look == Look::working ? QColor(240, 180, 60)
                                                  : QColor(150, 150, 155);
    painter.setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(look == Look::rest ? QBrush(Qt::NoBrush) : QBrush(colour));
    painter.drawRoundedRect(QRectF(9, 3, 6, 11), 3, 3);
    painter.setBrush(Qt::NoBrush);
    constexpr int sixteenths = 16;  // Qt counts angles in sixteenths of a degree
    painter.drawArc(QRectF(6, 6, 12, 12), 180 * sixteenths, 180 * sixteenths);
    painter.drawLine(QPointF(12, 18), QPointF(12, 21));
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace

TrayMenu::TrayMenu(Actions actions) {
  status_ = menu_.addAction(QString());
  status_->setEnabled(false);
  menu_.addSeparator();
  toggle_ = menu_.addAction(QStringLiteral("Start Dictation"));
  cancel_ = menu_.addAction(QStringLiteral("Discard Dictation"));
  retry_ = menu_.addAction(QStringLiteral("Try Again"));
  copyLast_ = menu_.addAction(QStringLiteral("Copy Last Dictation"));
  bringBack_ = menu_.addAction(QStringLiteral("Bring Back the Clipboard"));
  bringBack_->setVisible(false);
  menu_.addSeparator();
  const auto add = [this](const QString& title, const std::function<void()>& run) {
    QObject::connect(menu_.addAction(title), &QAction::triggered, [run] { run(); });
  };
  add(QStringLiteral("Settings…"), actions.openSettings);
  add(QStringLiteral("History…"), actions.openHistory);
  auto* setup = menu_.addAction(QStringLiteral("Setup and Permissions…"));
  add(QStringLiteral("About Murmel"), actions.openAbout);
  auto* quit = menu_.addAction(QStringLiteral("Quit Murmel"));
  QObject::connect(toggle_, &QAction::triggered, [run = actions.toggle] { run(); });
  QObject::connect(cancel_, &QAction::triggered, [run = actions.cancel] { run(); });
  QObject::connect(retry_, &QAction::triggered, [run = actions.retry] { run(); });
  QObject::connect(copyLast_, &QAction::triggered, [run = actions.copyLast] { run(); });
  QObject::connect(bringBack_, &QAction::triggered, [run = actions.bringBackClipboard] { run(); });
  QObject::connect(setup, &QAction::triggered, [run = actions.openSetup] { run(); });
  QObject::connect(quit, &QAction::triggered, [run = actions.quit] { run(); });
  QObject::connect(&icon_, &QSystemTrayIcon::activated,
                   [run = actions.toggle](QSystemTrayIcon::ActivationReason why) {
                     if (why == QSystemTrayIcon::Trigger) run();
                   });
  icon_.setContextMenu(&menu_);
  setHasLastTranscript(false);
  setCanRetry(false);
  update(DictationState());
}

void TrayMenu::show() {
  icon_.show();
}

void TrayMenu::update(const DictationState& state) {
  const auto words = inPlatformWords(state.title());
  status_->setText(words);
  toggle_->setText(state.isRecording() ? QStringLiteral("Stop Dictation")
                                       : QStringLiteral("Start Dictation"));
  toggle_->setEnabled(state.isRecording() || !state.isBusy());
  cancel_->setEnabled(state.isBusy());
  icon_.setToolTip(QStringLiteral("Murmel · ") + words);
  icon_.setIcon(iconFor(lookOf(state)));
}

void TrayMenu::setHasLastTranscript(bool available) {
  copyLast_->setEnabled(available);
}

void TrayMenu::setCanBringBackClipboard(bool available) {
  bringBack_->setVisible(available);
}

void TrayMenu::setCanRetry(bool can) {
  retry_->setEnabled(can);
}

void TrayMenu::notify(const QString& title, const QString& text) {
  icon_.showMessage(title, text);
}

}  // namespace murmel
