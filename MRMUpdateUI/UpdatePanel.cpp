#include "MRMUpdateUI/UpdatePanel.h"

#include "Interface/Common/Form.h"
#include "Interface/PlatformWords.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLocale>
#include <QProgressBar>
#include <QVBoxLayout>

namespace murmel {

namespace {

using Phase = UpdateStatus::Phase;

constexpr int progressSteps = 1'000;
constexpr int progressHeight = 8;

QString sizeWords(std::int64_t bytes) {
  return QLocale().formattedDataSize(bytes, 0, QLocale::DataSizeSIFormat);
}

QString availableWords(const UpdateRelease& release) {
  return UpdatePanel::tr("Version %1 is available, %2.")
      .arg(QString::fromStdString(release.version), sizeWords(release.size));
}

}  // namespace

QString updateWords(const UpdateStatus& status) {
  switch (status.phase) {
    case Phase::idle:
      return {};
    case Phase::checking:
      return UpdatePanel::tr("Looking for a new version…");
    case Phase::upToDate:
      return UpdatePanel::tr("This is the newest version.");
    case Phase::available:
      return availableWords(*status.release);
    case Phase::downloading:
      return status.progress.total
                 ? UpdatePanel::tr("Downloading, %1 of %2")
                       .arg(sizeWords(status.progress.received), sizeWords(*status.progress.total))
                 : UpdatePanel::tr("Downloading…");
    case Phase::waiting:
      return UpdatePanel::tr("Downloaded. It is installed when nobody dictates.");
    case Phase::installing:
      return UpdatePanel::tr("Installing…");
    case Phase::installed:
      return UpdatePanel::tr("Installed. Murmel starts again.");
    case Phase::failed:
      return inPlatformWords(status.message);
  }
  return {};
}

UpdatePanel::UpdatePanel(DirectUpdater& updater, const std::string& packageCommand)
    : updater_(updater),
      packageCommand_(QString::fromStdString(packageCommand)),
      state_(label({})),
      lastCheck_(label({}, LabelRole::second)),
      notes_(label({}, LabelRole::second)),
      progress_(new QProgressBar),
      check_(button(tr("Check Now"), [this] { updater_.check(); })),
      install_(button(tr("Install"), [this] { updater_.install(false); })),
      installWhenIdle_(button(tr("Install When Idle"), [this] { updater_.install(true); })),
      cancel_(button(tr("Cancel"), [this] { updater_.cancel(); })) {
  // Written by the makers, but not to be trusted with links and pictures.
  notes_->setTextFormat(Qt::PlainText);
  state_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  progress_->setTextVisible(false);
  progress_->setFixedHeight(progressHeight);
  progress_->setAccessibleName(tr("Download of the update"));
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(4 * grid::unit, grid::medium, 4 * grid::unit, grid::medium);
  lines->setSpacing(grid::small);
  for (auto* line : {state_, notes_}) lines->addWidget(line);
  lines->addWidget(progress_);
  auto* foot = new QHBoxLayout;
  foot->setSpacing(grid::small);
  foot->addWidget(lastCheck_, 1);
  for (auto* action : {cancel_, installWhenIdle_, install_, check_}) foot->addWidget(action);
  lines->addLayout(foot);
  changes_ = updater_.onChange([this] { show(); });
  show();
}

void UpdatePanel::show() {
  const auto& status = updater_.status();
  auto words = updateWords(status);
  const bool canChoose =
      status.release && (status.phase == Phase::available || status.phase == Phase::failed);
  if (canChoose && updater_.road() == UpdateRoad::systemPackage)
    words += u' ' + tr("It comes with the packages of your system: %1").arg(packageCommand_);
  state_->setText(words);
  state_->setVisible(!words.isEmpty());
  notes_->setText(status.release ? QString::fromStdString(status.release->notes) : QString());
  notes_->setVisible(!notes_->text().isEmpty());
  lastCheck_->setText(status.lastCheck
                          ? tr("Last check: %1")
                                .arg(QLocale().toString(QDateTime::fromSecsSinceEpoch(*status.lastCheck),
                                                        QLocale::ShortFormat))
                          : tr("Never checked"));
  const bool isRunning = status.isUnderWay();
  progress_->setVisible(status.phase == Phase::downloading || status.phase == Phase::installing);
  const auto total = status.phase == Phase::downloading ? status.progress.total.value_or(0) : 0;
  progress_->setRange(0, total > 0 ? progressSteps : 0);
  if (total > 0)
    progress_->setValue(
        static_cast<int>(static_cast<double>(progressSteps) * static_cast<double>(status.progress.received) /
                         static_cast<double>(total)));
  const bool canInstall = canChoose && updater_.road() == UpdateRoad::direct;
  check_->setVisible(!isRunning && status.phase != Phase::installed);
  check_->setEnabled(updater_.whyNot().empty());
  install_->setVisible(canInstall);
  installWhenIdle_->setVisible(canInstall);
  cancel_->setVisible(isRunning && status.phase != Phase::installing);
}

}  // namespace murmel
