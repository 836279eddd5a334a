#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <cstdint>
#include <filesystem>

namespace murmel::confinement {

/// The version of Landlock that this kernel has and lets us use; 0 when there is none.
[[nodiscard]] int landlockVersion();

/// What a process may do below some paths; everything else that the kernel can refuse is refused.
class LandlockRules {
 public:
  /// With `version` of Landlock, at most what `landlockVersion` says. `connects`: TCP stays possible.
  LandlockRules(int version, bool connects);

  /// All of these pass over what is not there. False when the kernel refuses the rule.
  bool allowReading(const std::filesystem::path& path);
  bool allowReadingAndExecuting(const std::filesystem::path& path);
  bool allowWriting(const std::filesystem::path& path);
  bool allowMakingSockets(const std::filesystem::path& folder);
  /// Reading and writing the file itself, and nothing about its folder.
  bool allowUsing(const std::filesystem::path& file);

  /// Valid unless the kernel refused to make it.
  [[nodiscard]] const UniqueDescriptor& descriptor() const { return ruleset_; }
  [[nodiscard]] UniqueDescriptor take() { return std::move(ruleset_); }

 private:
  bool allow(const std::filesystem::path& path, std::uint64_t rights);

  std::uint64_t handled_ = 0;
  UniqueDescriptor ruleset_;
};

/// Puts the rules over this thread and what it starts, for good. Safe between fork and exec.
[[nodiscard]] bool imposeLandlock(int ruleset);

}  // namespace murmel::confinement
