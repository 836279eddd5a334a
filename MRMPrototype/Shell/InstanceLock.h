#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Shell/Installation.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

namespace murmel {

/// What makes one instance the only one of its edition in this session: a locked file in the runtime folder,
/// which the system unlocks whatever way the process ends. The session bus may be missing; this is not.
class InstanceLock {
 public:
  /// Nothing when another process holds it. The error is one sentence for the user.
  static std::expected<std::optional<InstanceLock>, std::string> take(const std::filesystem::path& file);

  /// Whether a process holds it. Disturbs nobody who takes it at the same moment.
  static bool isHeld(const std::filesystem::path& file);

  static std::filesystem::path fileOf(const Installation& installation);

 private:
  explicit InstanceLock(UniqueDescriptor file) : file_(std::move(file)) {}
  UniqueDescriptor file_;
};

}  // namespace murmel
