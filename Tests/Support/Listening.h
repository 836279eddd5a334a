#pragma once

#include "Platform/AudioInput.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace murmel {

/// Keeps what an audio input hands over, on whatever thread.
class Listening {
 public:
  AudioInput::FragmentHandler onFragment() {
    return [state = state_](std::span<const float> interleaved, AudioFormat format) {
      const std::lock_guard lock(state->mutex);
      state->samples.insert(state->samples.end(), interleaved.begin(), interleaved.end());
      state->formats.push_back(format);
      ++state->fragments;
    };
  }
  std::move_only_function<void()> onChange() {
    return [state = state_] { ++state->changes; };
  }

  [[nodiscard]] std::vector<float> samples() const {
    const std::lock_guard lock(state_->mutex);
    return state_->samples;
  }
  [[nodiscard]] std::size_t sampleCount() const {
    const std::lock_guard lock(state_->mutex);
    return state_->samples.size();
  }
  [[nodiscard]] std::vector<AudioFormat> formats() const {
    const std::lock_guard lock(state_->mutex);
    return state_->formats;
  }
  [[nodiscard]] int fragments() const { return state_->fragments; }
  [[nodiscard]] int changes() const { return state_->changes; }
  /// Whether somebody still holds a handler of this.
  [[nodiscard]] bool held() const { return state_.use_count() > 1; }

 private:
  struct State {
    mutable std::mutex mutex;
    std::vector<float> samples;
    std::vector<AudioFormat> formats;
    std::atomic<int> fragments = 0;
    std::atomic<int> changes = 0;
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace murmel
