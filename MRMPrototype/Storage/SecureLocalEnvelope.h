#pragma once

#include "Storage/SecureLocalStorageError.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace murmel {

/// The outside of a sealed file: which key opens it, and the sealed box. The file is seven bytes of magic,
/// then a JSON object with the fields' names as keys, the box in base64.
struct SecureLocalEnvelope {
  static constexpr std::string_view magic = "MRMENC1";
  static constexpr std::int64_t currentVersion = 1;

  std::int64_t version = currentVersion;
  std::string keyID;
  std::vector<std::uint8_t> sealedData;  ///< nonce, ciphertext, tag

  static bool hasMagic(std::span<const std::uint8_t> fileBytes);
  /// From the bytes of a whole file. `invalidEnvelope` when anything is missing, of another type or
  /// malformed; the version is not judged here.
  static SecureResult<SecureLocalEnvelope> decode(std::span<const std::uint8_t> fileBytes);
  [[nodiscard]] std::string encode() const;
};

}  // namespace murmel
