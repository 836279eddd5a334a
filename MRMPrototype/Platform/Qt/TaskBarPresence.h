#pragma once

#include "Platform/ActivationPolicy.h"

#include <memory>

namespace murmel {

/// What a dock icon is on an X11 desktop, where an application without windows has none: `regular` lists our
/// windows in the task bar, the dock and the window switcher, `accessory` leaves only the tray icon. Windows
/// that are open change at once, others when they are shown. On Wayland the compositor alone decides, and
/// nothing happens. Main thread.
class TaskBarPresence final : public ActivationPolicyControl {
 public:
  /// `regular`, as the desktop does without being asked. Needs a QGuiApplication for as long as it lives.
  TaskBarPresence();
  ~TaskBarPresence() override;
  TaskBarPresence(const TaskBarPresence&) = delete;
  TaskBarPresence& operator=(const TaskBarPresence&) = delete;

  [[nodiscard]] ActivationPolicy current() const override;
  void set(ActivationPolicy policy) override;

 private:
  class Filter;
  std::unique_ptr<Filter> filter_;
};

}  // namespace murmel
