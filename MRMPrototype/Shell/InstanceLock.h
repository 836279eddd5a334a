#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Shell/Installation.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

namespace murmel {

/// What makes one instance the only one of its user, of whichever edition: two would hear the same shortcut,
/// and both type. A locked file in the runtime folder, which the system unlocks whatever way the process
/// ends. The session bus may be missing; this is not.
class InstanceLock {
 public:
  /// Nothing when another process holds it. The error is one sentence for the user.
  static std::expected<std::optional<InstanceLock>, std::string> take(const Installation& installation);

  struct Holder {
    std::string identifier;  ///< of the application; empty for the moment in which it has not said so
    std::string screen;      ///< see `screenOf`
  };
  /// Disturbs nobody who takes it at the same moment.
  static std::optional<Holder> holder(const Installation& installation);
  /// The display server that an installation's environment names: a user may be logged in twice.
  static std::string screenOf(const Installation& installation);
  /// Whether an instance of this edition holds it.
  static bool isHeldByEdition(const Installation& installation);

 private:
  explicit InstanceLock(UniqueDescriptor file) : file_(std::move(file)) {}
  UniqueDescriptor file_;
};

}  // namespace murmel
