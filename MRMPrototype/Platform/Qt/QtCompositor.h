#pragma once

#include "Platform/Compositor.h"

#include <memory>

class QScreen;

namespace murmel {

/// The compositor of X's first screen; there are no others any more. Off X there always is one. Needs a
/// QGuiApplication, and has to go before it.
class QtCompositor final : public Compositor {
 public:
  QtCompositor();
  ~QtCompositor() override;
  QtCompositor(const QtCompositor&) = delete;
  QtCompositor& operator=(const QtCompositor&) = delete;

  [[nodiscard]] bool isThere() const override;
  Signal<>& didChange() override { return didChange_; }

 private:
  class Filter;
  Signal<> didChange_;
  std::unique_ptr<Filter> filter_;  ///< null off X
};

/// The screen with most of this window of X; null when there is no such window.
QScreen* screenOfWindow(unsigned long window);

}  // namespace murmel
