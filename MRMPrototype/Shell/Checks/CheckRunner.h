#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Scope.h"
#include "Foundation/Async/Task.h"
#include "Product/DesktopChecks.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// What trying something has shown.
struct CheckResult {
  CheckState state = CheckState::works;
  std::string sentence;
  std::vector<std::string> details{};
};

/// One check: how it is tried, and what leads to its cure.
struct CheckDefinition {
  std::string identifier;
  std::string name;
  std::function<Task<CheckResult>()> attempt;
  std::string cureTitle{};
  std::function<void()> cure{};
  /// What it means when nothing answers in time.
  CheckState hanging = CheckState::limited;
};

/// Tries checks side by side, each for a bounded time. Main thread.
class CheckRunner final : public DesktopChecks {
 public:
  /// A model of a gigabyte is read within this on a slow disk.
  static constexpr Duration limit = std::chrono::seconds(30);

  CheckRunner(Executor& executor, std::vector<CheckDefinition> definitions);

  [[nodiscard]] const std::vector<CheckReport>& reports() const override { return reports_; }
  void run() override;
  void cure(const std::string& identifier) override;
  [[nodiscard]] Signal<>& didChange() override { return didChange_; }

  [[nodiscard]] bool isRunning() const { return unfinished_ > 0; }

 private:
  static Task<void> attempt(CheckRunner& runner, std::size_t index);
  void finish(std::size_t index, CheckResult result);

  Executor& executor_;
  std::vector<CheckDefinition> definitions_;
  std::vector<CheckReport> reports_;
  std::size_t unfinished_ = 0;
  Signal<> didChange_;
  Registration limitTimer_;
  Scope tasks_;  // last: its tasks use everything above
};

}  // namespace murmel
