#pragma once

#include "Shell/CommandOutcome.h"
#include "Shell/IntelCommand.h"
#include "Shell/StatusPublisher.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// The running instance's door on the session bus, under the application identifier: the standard interface
/// org.freedesktop.Application, and app.murmel.Dictation1 with answers and the status. Which instance is the
/// one is not decided here. No word that was spoken passes through it.
class RemoteCommandService {
 public:
  struct Handlers {
    std::function<void(IntelCommand, CommandReply)> command;
    std::function<StatusReport()> status;
  };

  /// Answers from now on; without a session bus nobody can ask.
  RemoteCommandService(std::string applicationIdentifier, Handlers handlers);
  ~RemoteCommandService();
  RemoteCommandService(const RemoteCommandService&) = delete;
  RemoteCommandService& operator=(const RemoteCommandService&) = delete;

  /// Tells whoever listens that the status is another one.
  void announceStatus();

 private:
  class Object;
  std::string applicationIdentifier_;
  std::unique_ptr<Object> object_;
};

/// Why the running instance could not be asked.
struct RemoteFailure {
  enum class Kind {
    nobodyThere,  ///< no instance has its door on the bus
    noAnswer,     ///< it is there, but does not answer in time; it will not do it later
    noBus,
  };
  Kind kind = Kind::nobodyThere;
  std::string message;  ///< one sentence for the user
};

/// Asks the running instance and waits for what became of it, some seconds at most; never starts one.
std::expected<CommandOutcome, RemoteFailure> sendRemoteCommand(const std::string& applicationIdentifier,
                                                               IntelCommand command);
std::expected<StatusReport, RemoteFailure> remoteStatus(const std::string& applicationIdentifier);

}  // namespace murmel
