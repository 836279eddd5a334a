#include "Interface/FirstRun/Steps.h"
#include "Interface/Models/ModelsPage.h"
#include "Interface/PlatformWords.h"

#include <QProgressBar>
#include <QVBoxLayout>
#include <algorithm>

namespace murmel {

namespace {

using State = ModelShelfRow::State;

bool isUnderWay(State state) {
  return state == State::downloading || state == State::waiting || state == State::verifying;
}

}  // namespace

ModelStep::ModelStep(const FirstRunServices& services)
    : FormPage(tr("Speech model"), tr("It turns your voice into words, on this computer.")),
      models_(services.models),
      progressWords_(label({}, LabelRole::second)),
      progress_(new QProgressBar),
      act_(button({}, [this] {
        const auto rows = models_.rows();
        const auto row = std::ranges::find(rows, betterName_, &ModelShelfRow::name);
        if (row == rows.end()) return;
        if (isUnderWay(row->state))
          models_.pause(betterName_);
        else
          models_.download(betterName_);
      })) {
  auto& now = *addCard(tr("Ready to use"));
  present_ = now.addRow(QString(), {}, nullptr);
  auto& more = *addCard(tr("Better, on this computer"));
  auto* control = new QWidget;
  auto* column = new QVBoxLayout(control);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(grid::small);
  progress_->setTextVisible(false);
  progress_->setFixedHeight(ModelsPage::progressHeight);
  progress_->setAccessibleName(tr("Download"));
  column->addWidget(progress_);
  column->addWidget(progressWords_);
  column->addWidget(buttonRow({act_}));
  better_ = more.addRow(QString(), {}, control, FormRow::Place::below);
  addWidget(new CheckList(services.checks, {"speech-model", "speech-recognition"}));
  changes_ = models_.changed().subscribe([this] { refresh(); });
  refresh();
}

void ModelStep::refresh() {
  const auto rows = models_.rows();
  const auto used = std::ranges::find_if(rows, [](const auto& row) { return row.isSpeech && row.isInUse; });
  present_->setTitle(used == rows.end() ? tr("There is no speech model yet.") : inPlatformWords(used->title));
  present_->setDescription(used == rows.end() ? QString() : inPlatformWords(used->purpose));
  // The first is the best one that this computer can run.
  const auto better = std::ranges::find_if(rows, [](const auto& row) {
    return row.isSpeech && !row.isPackaged && !row.isInUse && row.unusable.empty() &&
           row.state != State::installed;
  });
  const bool isThere = better != rows.end();
  const auto refusal = models_.downloadsUnavailable();
  for (auto* part : {static_cast<QWidget*>(act_), static_cast<QWidget*>(progressWords_)})
    part->setVisible(isThere && refusal.empty());
  progress_->setVisible(isThere && better->received > 0);
  better_->setTitle(isThere ? inPlatformWords(better->title)
                            : tr("You have the best one for this computer."));
  better_->setDescription(!isThere           ? QString()
                          : !refusal.empty() ? inPlatformWords(refusal)
                                             : inPlatformWords(better->purpose));
  if (!isThere) return;
  betterName_ = better->name;
  act_->setText(literal(isUnderWay(better->state) ? tr("Pause")
                        : better->received > 0    ? tr("Continue")
                                                  : tr("Download")));
  constexpr int steps = 1'000;
  const auto size = better->size.value_or(0);
  progress_->setRange(0, size > 0 ? steps : 0);
  if (size > 0) progress_->setValue(static_cast<int>(better->received * steps / size));
  QStringList words;
  if (better->received > 0)
    words += ModelsPage::progressWords(*better);
  else if (size > 0)
    words += ModelsPage::sizeWords(size);
  if (!better->problem.empty()) words += inPlatformWords(better->problem);
  progressWords_->setText(words.join(QStringLiteral(" · ")));
}

}  // namespace murmel
