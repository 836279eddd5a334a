#pragma once

#include "Platform/ProcessLauncher.h"

#include <atomic>
#include <functional>
#include <utility>

namespace murmel {

/// How far children are confined.
struct ConfinementPolicy {
  /// Whether children start also where the system cannot hide files from them; asked only there.
  std::function<bool()> allowsUnconfined{};
  int newestLandlock = 99;     ///< newer versions are not used; 0: as if there were none
  bool usesNamespaces = true;  ///< where the system lets an ordinary user make them
};

/// Starts children so that nothing of this process leaks into them: no descriptor, no variable, no signal
/// mask, no terminal, no privilege to gain. The file that is opened here is the file that runs, whatever
/// happens to its name meanwhile.
///
/// A child is killed when the *thread* that called `launch` ends (PR_SET_PDEATHSIG goes by thread): launch
/// from the thread that owns the child. Core dumps are off, but the child stays "dumpable", because
/// /proc/<pid>/exe could not be read otherwise. Programs only, no scripts.
class LinuxProcessLauncher final : public ProcessLauncher {
 public:
  explicit LinuxProcessLauncher(ConfinementPolicy policy = {}) : policy_(std::move(policy)) {}

  std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) override;

 private:
  ConfinementPolicy policy_;
  std::atomic<bool> hasNamespaces_{policy_.usesNamespaces};
};

}  // namespace murmel
