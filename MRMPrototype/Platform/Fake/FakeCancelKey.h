#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/CancelKey.h"

#include <functional>
#include <utility>

namespace murmel {

class FakeCancelKey final : public CancelKey {
 public:
  [[nodiscard]] Registration take(std::function<void()> pressed) override {
    return pressed_.subscribe(std::move(pressed));
  }

  [[nodiscard]] bool isTaken() const { return pressed_.hasSubscribers(); }
  void press() { pressed_.emit(); }

 private:
  Signal<> pressed_;
};

}  // namespace murmel
