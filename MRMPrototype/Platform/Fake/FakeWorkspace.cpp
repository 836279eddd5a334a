#include "Platform/Fake/FakeWorkspace.h"

#include <stdexcept>
#include <utility>

namespace murmel {

Registration FakeWorkspace::onActivation(std::function<void(const RunningApplication&)> handler) {
  return activations_.subscribe(std::move(handler));
}

bool FakeWorkspace::isTerminated(const RunningApplication& application) {
  return terminated_.contains(application.client.processIdentifier) ||
         closedWindows_.contains(application.window);
}

void FakeWorkspace::activate(const RunningApplication& application) {
  if (isTerminated(application)) throw std::logic_error("a terminated application was activated");
  activated_.push_back(application);
  if (!activationTime_) return;
  arrival_ = executor_.after(*activationTime_, [this, application] { bringToFront(application); });
}

void FakeWorkspace::bringToFront(std::optional<RunningApplication> application) {
  front_ = std::move(application);
  announcement_.reset();
  if (!front_) return;
  announcement_ = executor_.after(activationDelay, [this] { activations_.emit(*front_); });
}

void FakeWorkspace::terminate(const RunningApplication& application) {
  terminated_.insert(application.client.processIdentifier);
  if (front_ && isSameApplication(*front_, application)) bringToFront(std::nullopt);
}

void FakeWorkspace::closeWindow(const RunningApplication& application) {
  closedWindows_.insert(application.window);
  if (front_ && isSameWindow(*front_, application)) bringToFront(std::nullopt);
}

}  // namespace murmel
