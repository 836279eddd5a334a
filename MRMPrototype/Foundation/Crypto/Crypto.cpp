#include "Foundation/Crypto/Crypto.h"

#include <charconv>
#include <stdexcept>

#include <openssl/evp.h>
#include <openssl/rand.h>

namespace murmel::crypto {

bool fillRandom(std::span<std::uint8_t> bytes) {
  return RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) == 1;
}

struct Sha256::State {
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context{EVP_MD_CTX_new(), &EVP_MD_CTX_free};
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  if (!state_->context || EVP_DigestInit_ex(state_->context.get(), EVP_sha256(), nullptr) != 1) {
    throw std::runtime_error("SHA-256 is not available");
  }
}

Sha256::~Sha256() = default;
Sha256::Sha256(Sha256&&) noexcept = default;
Sha256& Sha256::operator=(Sha256&&) noexcept = default;

void Sha256::update(std::span<const std::uint8_t> bytes) {
  if (EVP_DigestUpdate(state_->context.get(), bytes.data(), bytes.size()) != 1) {
    throw std::runtime_error("SHA-256 update failed");
  }
}

Sha256Digest Sha256::finish() {
  Sha256Digest digest{};
  if (EVP_DigestFinal_ex(state_->context.get(), digest.data(), nullptr) != 1) {
    throw std::runtime_error("SHA-256 could not be finished");
  }
  return digest;
}

Sha256Digest sha256(std::span<const std::uint8_t> bytes) {
  Sha256 hash;
  hash.update(bytes);
  return hash.finish();
}

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const auto byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
  }
  return text;
}

bool fromHexadecimal(std::string_view digits, std::span<std::uint8_t> bytes) {
  if (digits.size() != 2 * bytes.size()) return false;
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    const char* const first = digits.data() + 2 * index;
    if (std::from_chars(first, first + 2, bytes[index], 16).ptr != first + 2) return false;
  }
  return hexadecimal(bytes) == digits;  // one spelling for one value
}

}  // namespace murmel::crypto
