#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/OneShot.h"
#include "Foundation/Async/Scope.h"
#include "Platform/FocusedField.h"
#include "Platform/Linux/Accessibility/AccessibilityBus.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace murmel {

/// Follows the focus on the desktop's accessibility bus, where that runs, and looks for it where it was
/// before the bus was reached. Main thread.
class AccessibleFocusedField final : public FocusedField {
 public:
  /// An application has `patience` to say what has the keyboard. The executor outlives this.
  explicit AccessibleFocusedField(Executor& executor, Duration patience = std::chrono::milliseconds(250));
  ~AccessibleFocusedField() override;

  [[nodiscard]] FieldTellers tellers() override;
  void prepare(const RunningApplication& application) override;
  Task<FocusedFieldKind> kind(RunningApplication application) override;

 private:
  /// What had the focus in an application last, and what that is if it has been asked for.
  struct Focus {
    std::optional<AccessibleObject> object;  ///< nothing: looked for and not found
    std::optional<FocusedFieldKind> kind;
  };

  enum class Purpose { preparation, answer };

  struct Question {
    OneShotSender<FocusedFieldKind> sender;
    FocusedFieldKind soFar = FocusedFieldKind::unanswered;
  };

  void focusChanged(const AccessibleObject& object, bool isFocused);
  void forgetOldConnection();
  Task<void> look(RunningApplication application);
  Task<void> answer(RunningApplication application, int looks, std::shared_ptr<Question> question);
  Task<FocusedFieldKind> find(pid_t process, Purpose purpose);
  Task<FocusedFieldKind> findBelow(AccessibleObject root, Purpose purpose);
  /// The parts of the desktop that are the process's.
  Task<std::vector<AccessibleObject>> rootsOf(pid_t process);
  /// What of the windows, or in them, has the focus, looked for where no word of it has come.
  Task<std::optional<AccessibleObject>> searchIn(std::vector<AccessibleObject> windows);
  Task<FocusedFieldKind> kindOf(AccessibleObject object);
  Task<bool> hides(AccessibleObject object);

  Executor& executor_;
  const Duration patience_;
  AccessibilityBus bus_;
  int knownConnection_ = 0;
  std::map<std::string, Focus> focus_;  ///< by the application's name on the bus
  std::map<std::string, pid_t> processes_;
  Scope scope_;  // last: its tasks use everything above
};

}  // namespace murmel
