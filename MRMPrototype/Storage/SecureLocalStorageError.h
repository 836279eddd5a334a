#pragma once

#include "Platform/SecretStore.h"

#include <cstdint>
#include <expected>
#include <string>

namespace murmel {

/// Why a sealed file could not be read, written or deleted.
class SecureLocalStorageError {
 public:
  enum class Case {
    keychain,              ///< a call to the secret store failed; `code` is its status
    invalidEnvelope,       ///< the file is not an envelope, or sealing gave none
    keyUnavailable,        ///< another version, or the key that the envelope names is not in the store
    authenticationFailed,  ///< the contents were changed since they were sealed
    unreadableContent,     ///< opened, but the content is not what its owner keeps there
    file,                  ///< a file operation failed; `code` is its errno
  };

  SecureLocalStorageError(Case which) : case_(which) {}  // a case without a code is an error.
  static SecureLocalStorageError keychain(SecretStatus status) { return {Case::keychain, status}; }
  static SecureLocalStorageError file(int errorNumber) { return {Case::file, errorNumber}; }

  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::int32_t code() const { return code_; }

  /// The file itself is at fault, so that trying again cannot help. Otherwise something that the file depends
  /// on failed, and the same file may well be readable later.
  [[nodiscard]] bool isDamage() const { return case_ != Case::keychain && case_ != Case::file; }

  /// For a log or the doctor; names no key and no content.
  [[nodiscard]] std::string description() const;

  friend bool operator==(const SecureLocalStorageError&, const SecureLocalStorageError&) = default;

 private:
  SecureLocalStorageError(Case which, std::int32_t code) : case_(which), code_(code) {}

  Case case_;
  std::int32_t code_ = 0;
};

template <class T>
using SecureResult = std::expected<T, SecureLocalStorageError>;

}  // namespace murmel
