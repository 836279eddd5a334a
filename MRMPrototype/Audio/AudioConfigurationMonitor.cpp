#include "Audio/AudioConfigurationMonitor.h"

#include <utility>

namespace murmel {

AudioConfigurationMonitor::AudioConfigurationMonitor(Executor& executor) : executor_(executor) {}

AudioConfigurationMonitor::Notifier AudioConfigurationMonitor::listen() {
  disarm();
  return {executor_, state_, state_->generation};
}

void AudioConfigurationMonitor::arm(std::function<void()> onChange) {
  state_->onChange = std::move(onChange);
}

void AudioConfigurationMonitor::disarm() {
  ++state_->generation;
  state_->onChange = nullptr;
}

void AudioConfigurationMonitor::Notifier::operator()() const {
  executor_->post([weak = state_, generation = generation_] {
    const auto state = weak.lock();
    if (!state || state->generation != generation || !state->onChange) return;
    ++state->generation;
    // Taken out first: the callback may stop the recording and start the next one.
    const auto onChange = std::exchange(state->onChange, nullptr);
    onChange();
  });
}

}  // namespace murmel
