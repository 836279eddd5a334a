#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/InjectedKeys.h"

#include <deque>

namespace murmel {

/// The announced key events that have not come yet. The event tap takes them out as they arrive.
class InjectedKeyList final : public InjectedKeys {
 public:
  /// The clock must outlive the list.
  explicit InjectedKeyList(const Clock& clock) : clock_(clock) {}

  void expect(std::uint32_t keyCode, bool goesDown) override;

  /// Whether such an event was announced; it is taken off the list then.
  bool take(std::uint32_t keyCode, bool goesDown);

 private:
  struct Expected {
    std::uint32_t keyCode;
    bool goesDown;
    Instant announced;
  };

  void forgetOld();

  const Clock& clock_;
  std::deque<Expected> expected_;
};

}  // namespace murmel
