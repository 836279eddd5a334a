#pragma once

#include "Foundation/Crypto/SecretBytes.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace murmel {

/// How a call to the secret store ended, in the numbers that stored diagnostics and messages know.
using SecretStatus = std::int32_t;

namespace secretStatus {

inline constexpr SecretStatus success = 0;
/// The system has no random bytes.
inline constexpr SecretStatus noRandomBytes = -1;
/// The call itself was wrong: an empty name.
inline constexpr SecretStatus invalidParameter = -50;
/// The store answered with something that is not an answer, or failed inside.
inline constexpr SecretStatus storeFailed = -36;
/// The user refused to unlock the store.
inline constexpr SecretStatus userCanceled = -128;
/// No store is running, or it does not answer in time.
inline constexpr SecretStatus serviceUnavailable = -25291;
inline constexpr SecretStatus duplicateItem = -25299;
inline constexpr SecretStatus itemNotFound = -25300;
/// The store has no collection that new secrets go to.
inline constexpr SecretStatus noDefaultCollection = -25307;
/// The store is locked, or would have to ask the user.
inline constexpr SecretStatus interactionNotAllowed = -25308;

}  // namespace secretStatus

/// One sentence for the user.
constexpr std::string_view describe(SecretStatus status) {
  switch (status) {
    case secretStatus::success:
      return "The key ring works.";
    case secretStatus::interactionNotAllowed:
      return "The key ring is locked.";
    case secretStatus::noDefaultCollection:
      return "The key ring has no default collection yet: its own program (in KDE, the wallet manager) makes "
             "one.";
    case secretStatus::serviceUnavailable:
      return "No key ring (Secret Service) answers on this desktop.";
    case secretStatus::userCanceled:
      return "The key ring stayed locked.";
    case secretStatus::noRandomBytes:
      return "The system has no random bytes.";
    default:
      return "The key ring answered with an error.";
  }
}

/// The user's key ring: small secrets named by a service and an account, readable while the user is logged
/// in.
///
/// `add`, `find` and `remove` never ask the user for a password and answer within two seconds; once the store
/// has not answered in time, they fail soon until it has been seen to answer again. Thread-safe.
class SecretStore {
 public:
  virtual ~SecretStore() = default;

  virtual std::expected<void, SecretStatus> add(const std::string& service, const std::string& account,
                                                const SecretBytes& secret) = 0;
  virtual std::expected<SecretBytes, SecretStatus> find(const std::string& service,
                                                        const std::string& account) = 0;
  virtual std::expected<void, SecretStatus> remove(const std::string& service,
                                                   const std::string& account) = 0;

  /// Asks the user to unlock the store. Blocks until they have answered: never on the main thread, and only
  /// when the user has asked for it.
  virtual std::expected<void, SecretStatus> unlock() = 0;
};

}  // namespace murmel
