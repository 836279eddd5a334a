#include "Platform/Fake/FakeKeyEventTap.h"

#include "Foundation/Async/Signal.h"

#include <stdexcept>
#include <utility>

namespace murmel {

struct FakeKeyEventTap::State {
  bool granted = true;
  int creationsToRefuse = 0;
  int attempts = 0;
  int created = 0;
  bool enabled = false;
  bool beyondRepair = false;
  std::shared_ptr<Handler> handler;  ///< null without a tap
};

class FakeKeyEventTap::Installed final : public InstalledKeyEventTap {
 public:
  explicit Installed(std::shared_ptr<State> state) : state_(std::move(state)) {}
  ~Installed() override {
    state_->handler = nullptr;
    state_->enabled = false;
  }
  Installed(const Installed&) = delete;
  Installed& operator=(const Installed&) = delete;

  bool enable() override {
    if (state_->beyondRepair) return false;
    state_->enabled = true;
    return true;
  }

 private:
  std::shared_ptr<State> state_;
};

FakeKeyEventTap::FakeKeyEventTap() : state_(std::make_shared<State>()) {}

ListenEventAccess FakeKeyEventTap::permission() {
  return {state_->granted, state_->granted ? "" : "The test has not granted it."};
}

std::unique_ptr<InstalledKeyEventTap> FakeKeyEventTap::create(Handler handler) {
  if (!handler) throw std::logic_error("a tap needs a handler");
  ++state_->attempts;
  if (!state_->granted || state_->handler) return nullptr;
  if (state_->creationsToRefuse > 0) {
    --state_->creationsToRefuse;
    return nullptr;
  }
  ++state_->created;
  state_->handler = std::make_shared<Handler>(std::move(handler));
  state_->enabled = true;
  state_->beyondRepair = false;
  return std::make_unique<Installed>(state_);
}

void FakeKeyEventTap::setPermission(bool granted) {
  state_->granted = granted;
}

void FakeKeyEventTap::refuseCreations(int count) {
  state_->creationsToRefuse = count;
}

void FakeKeyEventTap::disable(KeyEventType type, bool forGood) {
  if (type != KeyEventType::tapDisabledByTimeout && type != KeyEventType::tapDisabledByUserInput) {
    throw std::logic_error("not a type that tells of a disabled tap");
  }
  if (!state_->enabled) throw std::logic_error("there is no enabled tap");
  state_->enabled = false;
  state_->beyondRepair = forGood;
  const auto handler = state_->handler;
  (*handler)(KeyEvent{type, 0, 0, false, ""});
}

void FakeKeyEventTap::deliver(const KeyEvent& event) {
  if (!state_->handler) throw std::logic_error("there is no tap");
  if (!state_->enabled) return;
  const auto handler = state_->handler;
  (*handler)(event);
}

bool FakeKeyEventTap::isInstalled() const {
  return state_->handler != nullptr;
}

bool FakeKeyEventTap::isEnabled() const {
  return state_->enabled;
}

int FakeKeyEventTap::creationAttempts() const {
  return state_->attempts;
}

int FakeKeyEventTap::creations() const {
  return state_->created;
}

struct FakeLocalKeyMonitor::State {
  Signal<const KeyEvent&> keys;
};

FakeLocalKeyMonitor::FakeLocalKeyMonitor() : state_(std::make_shared<State>()) {}

Registration FakeLocalKeyMonitor::add(Handler handler) {
  return state_->keys.subscribe(std::move(handler));
}

void FakeLocalKeyMonitor::deliver(const KeyEvent& event) const {
  state_->keys.emit(event);
}

bool FakeLocalKeyMonitor::hasMonitors() const {
  return state_->keys.hasSubscribers();
}

}  // namespace murmel
