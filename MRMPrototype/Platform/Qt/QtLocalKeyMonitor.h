#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/LocalKeyMonitor.h"

#include <memory>

namespace murmel {

/// The keys of this application's windows, from Qt's events on X11 and Wayland. Key events that no key of a
/// keyboard caused, like those of an input method, are left out, and so is the Caps Lock flag, which Qt does
/// not tell.
///
/// When the application loses the focus, what is still held is told as released: its release goes elsewhere.
class QtLocalKeyMonitor final : public LocalKeyMonitor {
 public:
  /// Needs a QGuiApplication for as long as it lives.
  QtLocalKeyMonitor();
  ~QtLocalKeyMonitor() override;
  QtLocalKeyMonitor(const QtLocalKeyMonitor&) = delete;
  QtLocalKeyMonitor& operator=(const QtLocalKeyMonitor&) = delete;

  [[nodiscard]] Registration add(Handler handler) override;

 private:
  class Filter;
  Signal<const KeyEvent&> keys_;
  std::unique_ptr<Filter> filter_;
};

}  // namespace murmel
