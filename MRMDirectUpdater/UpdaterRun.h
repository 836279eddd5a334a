#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Text/LineSplitter.h"
#include "Platform/ProcessLauncher.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// How far a download is.
struct UpdateProgress {
  std::int64_t received = 0;          ///< bytes
  std::optional<std::int64_t> total;  ///< bytes
  std::string trouble;                ///< why it is tried again; one sentence, or empty

  friend bool operator==(const UpdateProgress&, const UpdateProgress&) = default;
};

/// One run of the updater: starts it, tells it its order, and hears how it ended. Destroying it ends the
/// process; what has arrived is kept. Main thread; nothing here blocks but the start.
class UpdaterRun {
 public:
  /// The feed's bytes after "feed", nothing after other tasks; the error is one sentence for the user.
  using Result = std::expected<std::string, std::string>;

  struct Handlers {
    std::function<void(const UpdateProgress&)> progress;
    /// The last call, never from inside the constructor. The run may be destroyed in it.
    std::function<void(Result)> done;
  };

  UpdaterRun(Executor& executor, ProcessLauncher& launcher, const ProcessRequest& request,
             const std::string& order, Handlers handlers);

 private:
  void receive();
  /// False when that was the end.
  bool take(std::string_view line);
  void finish(Result result);

  Executor& executor_;
  Handlers handlers_;
  std::unique_ptr<ChildProcess> process_;
  LineSplitter lines_;
  Registration output_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< weakly held by what was posted
};

}  // namespace murmel
