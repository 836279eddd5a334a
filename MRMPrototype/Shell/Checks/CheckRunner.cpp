#include "Shell/Checks/CheckRunner.h"

#include <utility>

namespace murmel {

CheckRunner::CheckRunner(Executor& executor, std::vector<CheckDefinition> definitions)
    : executor_(executor), definitions_(std::move(definitions)) {
  for (const auto& definition : definitions_) {
    reports_.push_back(
        {.identifier = definition.identifier, .name = definition.name, .sentence = {}, .cure = {}});
  }
}

void CheckRunner::run() {
  if (isRunning()) return;
  unfinished_ = definitions_.size();
  for (auto& report : reports_) {
    report.state = CheckState::pending;
    report.sentence.clear();
    report.details.clear();
    report.cure.clear();
  }
  didChange_.emit();
  limitTimer_ = executor_.after(limit, [this] {
    tasks_.cancelAll();
    for (std::size_t index = 0; index < reports_.size(); ++index) {
      if (reports_[index].state == CheckState::pending)
        finish(index, {definitions_[index].hanging, "It does not answer."});
    }
  });
  for (std::size_t index = 0; index < definitions_.size(); ++index) tasks_.start(attempt(*this, index));
}

Task<void> CheckRunner::attempt(CheckRunner& runner, std::size_t index) {
  auto trying = runner.definitions_[index].attempt();
  auto result = co_await trying;
  runner.finish(index, std::move(result));
}

void CheckRunner::finish(std::size_t index, CheckResult result) {
  auto& report = reports_[index];
  report.state = result.state;
  report.sentence = std::move(result.sentence);
  report.details = std::move(result.details);
  if (result.state != CheckState::works) report.cure = definitions_[index].cureTitle;
  if (--unfinished_ == 0) limitTimer_.reset();
  didChange_.emit();
}

void CheckRunner::cure(const std::string& identifier) {
  for (const auto& definition : definitions_) {
    if (definition.identifier == identifier && definition.cure) definition.cure();
  }
}

}  // namespace murmel
