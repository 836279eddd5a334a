#pragma once

#include "Platform/ProcessLauncher.h"

namespace murmel {

/// Starts children so that nothing of this process leaks into them: no descriptor, no variable, no signal
/// mask, no terminal, no privilege to gain. The file that is opened here is the file that runs, whatever
/// happens to its name meanwhile.
///
/// A child is killed when the *thread* that called `launch` ends (PR_SET_PDEATHSIG goes by thread): launch
/// from the thread that owns the child. Core dumps are off, but the child stays "dumpable", because
/// /proc/<pid>/exe could not be read otherwise. Programs only, no scripts.
class LinuxProcessLauncher final : public ProcessLauncher {
 public:
  std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) override;
};

}  // namespace murmel
