#pragma once

#include "Foundation/Async/Clock.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace murmel {

/// How fast a download is, over the last seconds: long enough to be calm, short enough to follow a slow
/// network.
class DownloadRate {
 public:
  static constexpr Duration window = std::chrono::seconds(6);

  void add(Instant now, std::int64_t received) {
    // A download that starts again, or goes on after a pause, has a rate of its own.
    if (!samples_.empty() && (received < samples_.back().received || now - samples_.back().at > window))
      samples_.clear();
    samples_.push_back({now, received});
    while (samples_.size() > 2 && now - samples_[1].at > window) samples_.pop_front();
  }
  /// Nothing before there is a second to look at, or while nothing arrives.
  [[nodiscard]] std::optional<double> bytesPerSecond() const {
    if (samples_.size() < 2) return std::nullopt;
    const auto seconds = durationToSeconds(samples_.back().at - samples_.front().at);
    const auto bytes = static_cast<double>(samples_.back().received - samples_.front().received);
    if (seconds < 1 || bytes <= 0) return std::nullopt;
    return bytes / seconds;
  }
  /// Seconds until `left` more bytes are there.
  [[nodiscard]] std::optional<std::int64_t> remaining(std::int64_t left) const {
    const auto rate = bytesPerSecond();
    if (!rate || left < 0) return std::nullopt;
    return static_cast<std::int64_t>(static_cast<double>(left) / *rate);
  }

 private:
  struct Sample {
    Instant at;
    std::int64_t received;
  };
  std::deque<Sample> samples_;
};

}  // namespace murmel
