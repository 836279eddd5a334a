#pragma once

#include "Platform/Linux/Process/LinuxProcessLauncher.h"

#include <filesystem>
#include <utility>

namespace murmel {

/// Starts children that may also write to one folder: stand-ins that keep a record there.
class RoomyLauncher final : public ProcessLauncher {
 public:
  explicit RoomyLauncher(std::filesystem::path folder) : folder_(std::move(folder)) {}

  std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) override {
    auto wider = request;
    wider.sandbox.writable.push_back(folder_);
    return launcher_.launch(wider);
  }

 private:
  std::filesystem::path folder_;
  LinuxProcessLauncher launcher_;
};

}  // namespace murmel
