#pragma once

#include "Storage/SecureLocalStorageError.h"

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Whether private data is being kept safely.
enum class SecureStorageStatus { available, unavailable };

/// What the user reads; empty while all is well.
constexpr std::string_view message(SecureStorageStatus status) {
  return status == SecureStorageStatus::available ? std::string_view()
                                                  : "Secure local storage is unavailable. Changes remain in "
                                                    "memory for this session and may not survive "
                                                    "relaunch.";
}

/// What to show while private data cannot be kept.
struct SecureStorageNotice {
  std::string_view sentence = message(SecureStorageStatus::unavailable);
  std::string reason;      ///< one more sentence: why
  bool canUnlock = false;  ///< the user can cure it by unlocking the key ring

  explicit SecureStorageNotice(const SecureLocalStorageError& error)
      : reason(error.description()),
        canUnlock(error == SecureLocalStorageError::keychain(secretStatus::interactionNotAllowed) ||
                  error == SecureLocalStorageError::keychain(secretStatus::noDefaultCollection)) {}
  friend bool operator==(const SecureStorageNotice&, const SecureStorageNotice&) = default;
};

}  // namespace murmel
