#pragma once

#include "Foundation/Async/Clock.h"
#include "Workers/SageWorker/SageModel.h"

#include <expected>
#include <memory>
#include <span>
#include <string>

namespace murmel::worker {

/// A corrector in a process that has given up everything but computing.
struct ReadyCorrector {
  /// "--model-dir DIR --runtime FILE", nothing else. The error is a short reason.
  static std::expected<ReadyCorrector, std::string> prepare(std::span<char* const> given);

  std::unique_ptr<Clock> clock;
  std::unique_ptr<OnnxRuntime> runtime;
  std::unique_ptr<SageModel> model;
};

}  // namespace murmel::worker
