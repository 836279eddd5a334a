#include "Foundation/Crypto/Ed25519.h"

#include <stdexcept>

#include <openssl/evp.h>
#include <openssl/pem.h>

namespace murmel::ed25519 {

namespace {

using KeyPointer = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using ContextPointer = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;

ContextPointer newContext() {
  return {EVP_MD_CTX_new(), &EVP_MD_CTX_free};
}

}  // namespace

bool verify(const PublicKey& key, std::span<const std::uint8_t> message, const Signature& signature) {
  const KeyPointer loaded(EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, key.data(), key.size()),
                          &EVP_PKEY_free);
  const auto context = newContext();
  if (!loaded || !context) return false;
  return EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, loaded.get()) == 1 &&
         EVP_DigestVerify(context.get(), signature.data(), signature.size(), message.data(),
                          message.size()) == 1;
}

void SigningKey::Deleter::operator()(void* key) const {
  EVP_PKEY_free(static_cast<EVP_PKEY*>(key));
}

std::optional<SigningKey> SigningKey::generate() {
  EVP_PKEY* key = EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519");
  if (key == nullptr) return std::nullopt;
  return SigningKey(key);
}

std::optional<SigningKey> SigningKey::fromSeed(const std::array<std::uint8_t, 32>& seed) {
  EVP_PKEY* key = EVP_PKEY_new_raw_private_key(EVP_PKEY_ED25519, nullptr, seed.data(), seed.size());
  if (key == nullptr) return std::nullopt;
  return SigningKey(key);
}

std::optional<SigningKey> SigningKey::fromPEM(const std::string& text) {
  const std::unique_ptr<BIO, decltype(&BIO_free)> source(
      BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), &BIO_free);
  const auto noPassword = [](char*, int, int, void*) { return 0; };
  KeyPointer key(source ? PEM_read_bio_PrivateKey(source.get(), nullptr, noPassword, nullptr) : nullptr,
                 &EVP_PKEY_free);
  if (!key || EVP_PKEY_get_id(key.get()) != EVP_PKEY_ED25519) return std::nullopt;
  return SigningKey(key.release());
}

PublicKey SigningKey::publicKey() const {
  PublicKey key{};
  auto size = key.size();
  if (EVP_PKEY_get_raw_public_key(static_cast<EVP_PKEY*>(key_.get()), key.data(), &size) != 1)
    throw std::runtime_error("Ed25519 key has no public half");
  return key;
}

Signature SigningKey::sign(std::span<const std::uint8_t> message) const {
  Signature signature{};
  auto size = signature.size();
  const auto context = newContext();
  auto* const key = static_cast<EVP_PKEY*>(key_.get());
  if (!context || EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, key) != 1 ||
      EVP_DigestSign(context.get(), signature.data(), &size, message.data(), message.size()) != 1) {
    throw std::runtime_error("Ed25519 signing failed");
  }
  return signature;
}

}  // namespace murmel::ed25519
