#include "Interface/Models/ModelsPage.h"

#include "Interface/Common/Dialogs.h"
#include "Interface/PlatformWords.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QProgressBar>
#include <QVBoxLayout>
#include <algorithm>

namespace murmel {

namespace {

QString fromCore(const std::string& text) {
  return inPlatformWords(text);
}

}  // namespace

/// One model: what it is, how it stands, and what can be done about it.
class ModelsPage::Row final : public QWidget {
 public:
  Row(ModelShelf& shelf, std::string name);
  void show(const ModelShelfRow& row);

 private:
  void askToRemove();
  [[nodiscard]] static QString stateWords(const ModelShelfRow& row);

  ModelShelf& shelf_;
  std::string name_;
  QLabel* title_;
  QLabel* about_;
  QLabel* state_;
  QProgressBar* progress_;
  QLabel* sign_;  ///< beside a state that is trouble
  QPushButton* use_;
  QPushButton* download_;
  QPushButton* pause_;
  QPushButton* verify_;
  QPushButton* remove_;
};

ModelsPage::Row::Row(ModelShelf& shelf, std::string name)
    : shelf_(shelf),
      name_(std::move(name)),
      title_(label({})),
      about_(label({}, LabelRole::second)),
      state_(label({}, LabelRole::second)),
      progress_(new QProgressBar),
      sign_(new QLabel),
      use_(button(ModelsPage::tr("Use"), [this] { shelf_.choose(name_); })),
      download_(button(ModelsPage::tr("Download"), [this] { shelf_.download(name_); })),
      pause_(button(ModelsPage::tr("Pause"), [this] { shelf_.pause(name_); })),
      verify_(button(ModelsPage::tr("Verify"), [this] { shelf_.verify(name_); })),
      remove_(button(ModelsPage::tr("Remove…"), [this] { askToRemove(); })) {
  verify_->setToolTip(ModelsPage::tr("Reads the whole model again and looks whether it is undamaged."));
  verify_->setAccessibleDescription(verify_->toolTip());
  progress_->setTextVisible(false);
  progress_->setFixedHeight(progressHeight);
  progress_->setRange(0, 1000);
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(4 * grid::unit, grid::medium, 4 * grid::unit, grid::medium);
  lines->setSpacing(3);
  lines->addWidget(title_);
  lines->addWidget(about_);
  auto* foot = new QHBoxLayout;
  foot->setSpacing(grid::small);
  foot->addWidget(sign_);
  foot->addWidget(state_, 1);
  for (auto* action : {use_, download_, pause_, verify_, remove_}) foot->addWidget(action);
  lines->addSpacing(grid::unit);
  lines->addWidget(progress_);
  lines->addSpacing(grid::unit);
  lines->addLayout(foot);
}

void ModelsPage::Row::show(const ModelShelfRow& row) {
  using enum ModelShelfRow::State;
  const auto title = fromCore(row.title);
  title_->setText(row.isInUse ? ModelsPage::tr("%1 — in use").arg(title) : title);
  setAccessibleName(title);
  auto about = row.purpose.empty() ? QStringList() : QStringList(fromCore(row.purpose));
  if (!row.licence.empty()) about += ModelsPage::tr("License: %1.").arg(QString::fromStdString(row.licence));
  about_->setText(about.join(u' '));
  about_->setVisible(!about.isEmpty());
  state_->setText(stateWords(row));
  const bool isTrouble = row.state == failed || row.state == damaged;
  sign_->setVisible(isTrouble);
  state_->setForegroundRole(isTrouble ? QPalette::WindowText : QPalette::PlaceholderText);
  if (isTrouble)
    sign_->setPixmap(
        symbolPixmap(Symbol::warning, 16, colourOf(Meaning::danger, palette()), devicePixelRatioF()));

  const bool isRunning = row.state == downloading || row.state == waiting;
  const bool isThere =
      !row.isPackaged && (row.state == installed || row.state == unverified || row.state == damaged);
  progress_->setVisible(isRunning || row.state == paused || row.state == verifying);
  progress_->setRange(0, row.state == verifying || !row.size ? 0 : 1000);
  if (row.size && *row.size > 0)
    progress_->setValue(
        static_cast<int>(1000.0 * static_cast<double>(row.received) / static_cast<double>(*row.size)));
  progress_->setAccessibleName(ModelsPage::tr("Download of %1").arg(title));
  download_->setText(literal(row.state == paused   ? ModelsPage::tr("Resume")
                             : row.state == failed ? ModelsPage::tr("Try Again")
                                                   : ModelsPage::tr("Download")));
  download_->setVisible(!row.isPackaged && !isRunning && !isThere && row.state != verifying);
  download_->setEnabled(row.unusable.empty() && shelf_.downloadsUnavailable().empty());
  use_->setVisible(row.canBeChosen && !row.isInUse);
  pause_->setVisible(isRunning);
  verify_->setVisible(isThere);
  remove_->setVisible(isThere || row.state == paused || (row.state == failed && row.onDisk > 0));
  for (auto* action : {use_, download_, pause_, verify_, remove_})
    action->setAccessibleName(QStringLiteral("%1: %2").arg(action->text(), title));
}

QString ModelsPage::sizeWords(std::uint64_t bytes) {
  return QLocale().formattedDataSize(static_cast<qint64>(bytes), bytes < 1'000'000'000 ? 0 : 1,
                                     QLocale::DataSizeSIFormat);
}

QString ModelsPage::progressWords(const ModelShelfRow& row) {
  QStringList parts{row.size ? tr("%1 of %2").arg(sizeWords(row.received), sizeWords(*row.size))
                             : sizeWords(row.received)};
  const bool isRunning = row.state == ModelShelfRow::State::downloading;
  if (isRunning && row.bytesPerSecond)
    parts += tr("%1 per second").arg(sizeWords(static_cast<std::uint64_t>(*row.bytesPerSecond)));
  if (isRunning && row.remainingSeconds) {
    const auto seconds = static_cast<int>(*row.remainingSeconds);
    parts += seconds < 90 ? tr("%n second(s) left", nullptr, seconds)
                          : tr("%n minute(s) left", nullptr, (seconds + 30) / 60);
  }
  return parts.join(QStringLiteral(" · "));
}

QString ModelsPage::Row::stateWords(const ModelShelfRow& row) {
  switch (row.state) {
    case ModelShelfRow::State::absent:
      if (!row.unusable.empty()) return fromCore(row.unusable);
      return row.size ? ModelsPage::tr("Not installed · %1 to download").arg(sizeWords(*row.size))
                      : ModelsPage::tr("Not installed");
    case ModelShelfRow::State::waiting:
      return ModelsPage::tr("Waiting…");
    case ModelShelfRow::State::downloading:
      return progressWords(row);
    case ModelShelfRow::State::paused:
      return ModelsPage::tr("Paused · %1").arg(progressWords(row));
    case ModelShelfRow::State::verifying:
      return ModelsPage::tr("Verifying…");
    case ModelShelfRow::State::unverified:
      return ModelsPage::tr("Installed, not verified yet · %1 on disk").arg(sizeWords(row.onDisk));
    case ModelShelfRow::State::installed:
      if (row.isPackaged) return ModelsPage::tr("Comes with Murmel");
      return ModelsPage::tr("Installed and verified · %1 on disk").arg(sizeWords(row.onDisk));
    case ModelShelfRow::State::damaged:
      return ModelsPage::tr("Damaged. Remove it and download it again.");
    case ModelShelfRow::State::failed:
      return fromCore(row.problem);
  }
  std::unreachable();
}

void ModelsPage::Row::askToRemove() {
  confirmRemoval(
      window(), ModelsPage::tr("Remove this model?"),
      ModelsPage::tr("%1 is deleted from this computer. It can be downloaded again.").arg(accessibleName()),
      ModelsPage::tr("Remove"), [this] { shelf_.remove(name_); });
}

ModelsPage::ModelsPage(ModelShelf& shelf)
    : FormPage(
          tr("Speech Models"),
          tr("Models run on this computer. Every file is checked before it is used. Q4 and Q8 in a name: "
             "the higher, the more exact, and the larger.")),
      shelf_(shelf),
      notice_(new NoticeBar(Severity::warning)),
      total_(label({}, LabelRole::second)) {
  addWidget(notice_);
  auto* unavailable = new NoticeBar(Severity::information);
  unavailable->setText(fromCore(shelf_.downloadsUnavailable()));
  addWidget(unavailable);
  speech_ = addCard(tr("Speech recognition"),
                    tr("Of those that are here, the best one for your language is used."));
  correction_ =
      addCard(tr("Punctuation and capitals"), tr("Used when “Format with a local model” is on, under Text."));
  addWidget(total_);
  changes_ = shelf_.changed().subscribe([this] { refresh(); });
  refresh();
}

void ModelsPage::refresh() {
  std::uint64_t total = 0;
  const auto rows = shelf_.rows();
  for (const auto& row : rows) {
    total += row.onDisk;
    auto& widget = rows_[row.name];
    if (widget == nullptr) widget = add(row.isSpeech ? *speech_ : *correction_, row);
    widget->show(row);
  }
  for (const auto& [name, widget] : rows_)
    widget->setVisible(std::ranges::find(rows, name, &ModelShelfRow::name) != rows.end());
  total_->setText(total == 0 ? tr("No model was downloaded yet.")
                             : tr("Downloaded models occupy %1.").arg(sizeWords(total)));
}

ModelsPage::Row* ModelsPage::add(Card& card, const ModelShelfRow& row) {
  auto* widget = new Row(shelf_, row.name);
  card.addWidget(widget);
  return widget;
}

}  // namespace murmel
