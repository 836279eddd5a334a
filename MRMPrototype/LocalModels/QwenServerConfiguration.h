#pragma once

#include "Foundation/Async/Clock.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace murmel {

/// How long an inference server may take. The defaults are the application's; tests use shorter ones.
struct QwenServerLimits {
  /// Until it accepts requests: a model of several gigabytes read from a slow disk.
  Duration readiness = std::chrono::seconds(60);
  /// Between two looks at whether it does.
  std::chrono::milliseconds readinessInterval{50};
  /// For one look: a server that takes the connection and says nothing is not ready.
  Duration readinessProbe = std::chrono::seconds(1);
  /// From the question to the answer, the wait for an earlier question included.
  Duration request = std::chrono::seconds(3);
  /// Between the friendly signal and the other one. A server has nothing to save.
  std::chrono::milliseconds terminationGrace{0};
};

/// What one start of an inference server is made of.
struct QwenServerConfiguration {
  std::filesystem::path executable;
  std::filesystem::path model;
  std::filesystem::path temporaryDirectory;
  /// Whether the executable may be started; called on the server's own thread.
  std::function<bool(const std::filesystem::path&)> mayExecute;
  QwenServerLimits limits;

  [[nodiscard]] std::vector<std::string> arguments(const std::filesystem::path& socketURL,
                                                   const std::filesystem::path& apiKeyFileURL) const;
};

}  // namespace murmel
