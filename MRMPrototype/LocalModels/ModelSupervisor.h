#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Foundation/Async/Task.h"
#include "Foundation/SpokenText.h"
#include "WorkerProcess/WorkerCancellation.h"

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// One life of a process with a model, from its start to its end. Every call blocks. It is made, started,
/// watched and destroyed on one thread, which must outlive the process: the system ends a child with the
/// thread that launched it. Questions come from another one, between `start` and the destruction, one at a
/// time.
class ModelProcess {
 public:
  enum class Failure {
    refused,   ///< no usable answer, or nobody waits for it any more
    timedOut,  ///< none until the deadline
    lost,      ///< nobody knows what it is answering
  };

  virtual ~ModelProcess() = default;
  /// Starts the process and waits until it takes questions. The error is a short reason that holds no path,
  /// no key and no word of the user's.
  virtual std::expected<void, std::string> start() = 0;
  /// Waits until the process has ended, or for the cancellation of its life.
  virtual void awaitEnd() = 0;
  /// The model's answer to `text`. `patience` is cancelled when nobody waits for it any more.
  virtual std::expected<std::string, Failure> ask(const std::string& text, Instant deadline,
                                                  const WorkerCancellation& patience) = 0;
};

/// Keeps a model's process well: starts it, notices its end, replaces one that hangs or has ended, and asks
/// it, one question at a time. Main thread.
///
/// Two time-outs in a row end a process; there are no answers until another one is ready, at once. A process
/// that ends or hangs is replaced by itself, but for the third time in a row that it has not answered
/// anything: from then on, as after a start that failed, another is started when somebody asks, each time
/// after twice the pause.
///
/// Held by whoever asks: a question that is under way when everybody else lets go still gets its answer.
class ModelSupervisor : public std::enable_shared_from_this<ModelSupervisor> {
 public:
  enum class Preparation { none, preparing, ready, failed };

  struct Limits {
    /// From the question to the answer, the wait for an earlier question included.
    Duration request = std::chrono::seconds(3);
    /// After the first process that has not answered anything; doubled with each that follows it.
    Duration firstPause = std::chrono::seconds(2);
    Duration longestPause = std::chrono::minutes(5);
  };

  struct Services {
    Executor& executor;
    const Clock& clock;
  };

  /// Makes what is started; called on the thread of its life, with what ends it.
  using Make = std::function<std::unique_ptr<ModelProcess>(const WorkerCancellation& cancellation)>;
  /// What is to be started now, or the reason why nothing can be. Asked at every start, on the main thread.
  using Source = std::function<std::expected<Make, std::string>()>;
  /// Makes of the question and its answer what is wanted of them; called on the thread of the questions.
  using Reading = std::optional<std::string> (*)(std::string_view question, std::string_view answer);

  /// Both are called on the main thread, later.
  struct Events {
    std::function<void()> preparationChanged;
    /// Why a process ended, or could not be started.
    std::function<void(const std::string& reason)> failed;
  };

  /// `label` names the threads. The services must outlive the supervisor.
  ModelSupervisor(Services services, const std::string& label, Source source, Limits limits, Events events);
  ~ModelSupervisor();
  ModelSupervisor(const ModelSupervisor&) = delete;
  ModelSupervisor& operator=(const ModelSupervisor&) = delete;

  /// Starts the process; nothing happens when it is ready or starting, nor before the pause after a failure
  /// is over.
  void startIfNeeded();

  /// What `reading` makes of the model's answer. Nothing when the process is not ready, and when no usable
  /// answer has come within the limit. Destroying the task gives the question up.
  [[nodiscard]] Task<std::optional<SpokenText>> ask(SpokenText question, Reading reading);

  /// Ends the process, soon: the destruction waits for it. Questions get no answer; failures are forgotten.
  void shutdown();

  [[nodiscard]] Preparation preparation() const;
  /// A short status: "idle", "starting", "process running on private local socket", or why the last start
  /// failed or the last process ended.
  [[nodiscard]] std::string diagnostic() const;

 private:
  struct Run;
  class Patience;

  static Task<std::optional<SpokenText>> askOn(std::shared_ptr<ModelSupervisor> supervisor,
                                               SpokenText question, Reading reading);
  [[nodiscard]] std::optional<SpokenText> exchange(const SpokenText& question, Instant deadline,
                                                   const WorkerCancellation& patience, Reading reading);
  void serve(const std::shared_ptr<Run>& run, const Make& make);
  bool becomeReady(const Run& run);
  void giveUp(Run& run, std::string reason);
  void end(const Run& run, std::string reason);
  void replace(Duration pause);
  void tellChange(std::optional<std::string> failure = std::nullopt);

  const Services services_;
  const Source source_;
  const Limits limits_;
  const Events events_;
  Registration replacement_;

  mutable std::mutex lock_;
  std::shared_ptr<Run> run_;  ///< the one that starts or is ready; guarded, as all up to the queues
  bool ready_ = false;
  bool starting_ = false;
  bool failed_ = false;
  int failures_ = 0;  ///< processes in a row that have not answered anything
  Instant notBefore_;
  std::string diagnostic_ = "idle";

  SerialQueue queue_;
  SerialQueue startupQueue_;  ///< busy as long as the process lives
};

}  // namespace murmel
