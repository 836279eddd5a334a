#pragma once

#include "Foundation/Crypto/SecretBytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Authenticated encryption with AES-256-GCM, no additional data. A sealed box is in combined form: the
/// 12-byte nonce, the ciphertext (as long as the plaintext), the 16-byte tag. Thread-safe.
namespace murmel::crypto {

inline constexpr std::size_t aes256KeySize = 32;
inline constexpr std::size_t gcmNonceSize = 12;
inline constexpr std::size_t gcmTagSize = 16;

/// Seals under a fresh random nonce. Nothing when the key is not of 32 bytes, the plaintext exceeds 1 GiB, or
/// the library fails.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> sealAes256Gcm(const SecretBytes& key,
                                                                     std::span<const std::uint8_t> plaintext);

/// Nothing when the box was not sealed under `key` or was changed since.
[[nodiscard]] std::optional<SecretBytes> openAes256Gcm(const SecretBytes& key,
                                                       std::span<const std::uint8_t> box);

}  // namespace murmel::crypto
