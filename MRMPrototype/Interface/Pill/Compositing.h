#pragma once

#include <functional>
#include <memory>

class QScreen;
class QWidget;

namespace murmel {

/// Whether windows are blended with what lies below them. Off X they are.
bool isComposited();

/// Calls `changed` whenever a compositor of X has come or gone, as long as it lives. Costs nothing elsewhere.
class CompositorWatch {
 public:
  /// `window` is one of ours, and outlives this.
  CompositorWatch(QWidget& window, std::function<void()> changed);
  ~CompositorWatch();
  CompositorWatch(const CompositorWatch&) = delete;
  CompositorWatch& operator=(const CompositorWatch&) = delete;

 private:
  class Filter;
  std::unique_ptr<Filter> filter_;
};

/// The screen with most of this window of X; null when there is no such window.
QScreen* screenOfWindow(unsigned long window);

}  // namespace murmel
