#pragma once

#include "Shell/IntelCommand.h"

#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace murmel {

/// The running instance's door on the session bus: the standard interface org.freedesktop.Application under
/// the application identifier, with one action a command. Whoever owns the name is the one instance of this
/// edition.
class RemoteCommandService {
 public:
  struct Handlers {
    std::function<void()> activate;  ///< the application was started once more
    std::function<void(IntelCommand)> command;
  };

  enum class Claim {
    owned,         ///< this process is the instance
    alreadyTaken,  ///< another process is; it may be asked to show itself
    noBus,         ///< there is no session bus: nobody can be reached, and nobody can be found
  };

  explicit RemoteCommandService(std::string applicationIdentifier);
  ~RemoteCommandService();
  RemoteCommandService(const RemoteCommandService&) = delete;
  RemoteCommandService& operator=(const RemoteCommandService&) = delete;

  /// Takes the name and answers requests from then on.
  Claim claim(Handlers handlers);

 private:
  class Object;
  std::string applicationIdentifier_;
  std::unique_ptr<Object> object_;
};

/// Asks the running instance; never starts one. The error is one sentence for the user.
std::expected<void, std::string> sendRemoteCommand(const std::string& applicationIdentifier,
                                                   IntelCommand command);
std::expected<void, std::string> activateRunningInstance(const std::string& applicationIdentifier);

}  // namespace murmel
