#include "Shell/RunningInstance.h"

#include <chrono>
#include <thread>

namespace murmel {

namespace {

/// An instance that quits recognises and delivers first what was spoken, which it may take a minute for.
constexpr auto endLimit = std::chrono::seconds(70);
constexpr auto pollInterval = std::chrono::milliseconds(30);

}  // namespace

SecondStart becomeTheInstance(const Installation& installation, bool replaces) {
  const auto limit = std::chrono::steady_clock::now() + endLimit;
  while (true) {
    auto lock = InstanceLock::take(installation);
    if (!lock) return {{}, commandStatus::refused, lock.error()};
    if (*lock) return {*std::move(lock), 0, {}};
    const auto holder = InstanceLock::holder(installation).value_or(InstanceLock::Holder{});
    if (!holder.identifier.empty() && holder.identifier != installation.identifier) {
      (void)sendRemoteCommand(holder.identifier, IntelCommand::revealApplication);
      return {{},
              commandStatus::refused,
              "Another edition of Murmel is running (" + holder.identifier + "). Quit it first."};
    }
    if (!replaces) {
      const auto shown = sendRemoteCommand(installation.identifier, IntelCommand::revealApplication);
      // Shown where this user does not look.
      if (shown && *shown && !holder.screen.empty() &&
          holder.screen != InstanceLock::screenOf(installation)) {
        return {{},
                commandStatus::refused,
                "Murmel is running on another screen of yours already (" + holder.screen +
                    "). “murmel quit” ends it there."};
      }
      if (shown && *shown) return {{}, commandStatus::done, {}};
      if (!shown && shown.error().kind != RemoteFailure::Kind::nobodyThere) {
        return {{}, commandStatus::refused, "Murmel is running already. " + shown.error().message};
      }
    }
    // It is about to end, or has not yet opened its door.
    if (std::chrono::steady_clock::now() > limit)
      return {{}, commandStatus::refused, "Murmel is running already, and neither ends nor answers."};
    std::this_thread::sleep_for(pollInterval);
  }
}

bool awaitEndOfInstance(const Installation& installation) {
  const auto limit = std::chrono::steady_clock::now() + endLimit;
  while (InstanceLock::isHeldByEdition(installation)) {
    if (std::chrono::steady_clock::now() > limit) return false;
    std::this_thread::sleep_for(pollInterval);
  }
  return true;
}

}  // namespace murmel
