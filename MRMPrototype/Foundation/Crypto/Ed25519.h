#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

/// Signatures after RFC 8032.
namespace murmel::ed25519 {

inline constexpr std::size_t publicKeySize = 32;
inline constexpr std::size_t signatureSize = 64;

using PublicKey = std::array<std::uint8_t, publicKeySize>;
using Signature = std::array<std::uint8_t, signatureSize>;

/// Whether `signature` is the one of `message` under `key`. False also for a key that is no point of the
/// curve.
[[nodiscard]] bool verify(const PublicKey& key, std::span<const std::uint8_t> message,
                          const Signature& signature);

/// The secret half, for what signs a release. Kept by the library, which wipes it. Move-only.
class SigningKey {
 public:
  /// A new key from the system's random generator; nothing when that fails.
  static std::optional<SigningKey> generate();
  /// The key that these 32 bytes are.
  static std::optional<SigningKey> fromSeed(const std::array<std::uint8_t, 32>& seed);
  /// A private key as OpenSSL writes it; nothing when it is none, or of another kind.
  static std::optional<SigningKey> fromPEM(const std::string& text);

  [[nodiscard]] PublicKey publicKey() const;
  [[nodiscard]] Signature sign(std::span<const std::uint8_t> message) const;

 private:
  struct Deleter {
    void operator()(void* key) const;
  };
  explicit SigningKey(void* key) : key_(key) {}
  std::unique_ptr<void, Deleter> key_;
};

}  // namespace murmel::ed25519
