#include "Interface/FirstRun/Steps.h"
#include "Interface/PlatformWords.h"

#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace murmel {

CheckList::CheckList(DesktopChecks& checks, std::vector<std::string> identifiers, bool isRest)
    : checks_(checks), identifiers_(std::move(identifiers)), isRest_(isRest) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, grid::unit, 0, 0);
  column->setSpacing(grid::unit);
  for (const auto& report : checks_.reports()) {
    const bool isNamed = std::ranges::find(identifiers_, report.identifier) != identifiers_.end();
    if (isNamed == isRest_) continue;
    auto* bar = new NoticeBar(Severity::warning);
    if (!report.cure.empty())
      bar->setAction(inPlatformWords(report.cure),
                     [this, identifier = report.identifier] { checks_.cure(identifier); });
    bars_.emplace(report.identifier, bar);
    column->addWidget(bar);
  }
  changes_ = checks_.didChange().subscribe([this] { refresh(); });
  refresh();
}

void CheckList::leaveOut(std::string sentence) {
  leftOut_ = std::move(sentence);
  refresh();
}

void CheckList::refresh() {
  bool isAnyShown = false;
  for (const auto& report : checks_.reports()) {
    const auto bar = bars_.find(report.identifier);
    if (bar == bars_.end()) continue;
    const bool fails = (report.state == CheckState::limited || report.state == CheckState::broken) &&
                       report.sentence != leftOut_;
    bar->second->setText(fails ? inPlatformWords(report.name) + QStringLiteral(": ") +
                                     inPlatformWords(report.sentence)
                               : QString());
    isAnyShown = isAnyShown || fails;
  }
  setVisible(isAnyShown);
}

}  // namespace murmel
