#include "Foundation/Crypto/AesGcm.h"

#include "Foundation/Crypto/Crypto.h"

#include <algorithm>
#include <memory>

#include <openssl/evp.h>

namespace murmel::crypto {

namespace {

// OpenSSL counts in int; what is sealed here is far smaller.
constexpr std::size_t largestPlaintext = std::size_t{1} << 30;

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;  // free wipes the key

CipherContext makeContext() {
  return {EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free};
}

}  // namespace

std::optional<std::vector<std::uint8_t>> sealAes256Gcm(const SecretBytes& key,
                                                       std::span<const std::uint8_t> plaintext) {
  if (key.size() != aes256KeySize || plaintext.size() > largestPlaintext) return std::nullopt;
  std::vector<std::uint8_t> box(gcmNonceSize + plaintext.size() + gcmTagSize);
  const auto nonce = std::span(box).first(gcmNonceSize);
  const auto tag = std::span(box).last(gcmTagSize);
  if (!fillRandom(nonce)) return std::nullopt;
  const auto context = makeContext();
  int written = 0;
  if (!context ||
      EVP_EncryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.reveal().data(), nonce.data()) != 1) {
    return std::nullopt;
  }
  if (!plaintext.empty() && EVP_EncryptUpdate(context.get(), box.data() + gcmNonceSize, &written,
                                              plaintext.data(), static_cast<int>(plaintext.size())) != 1) {
    return std::nullopt;
  }
  std::uint8_t nothing = 0;  // GCM has no final block
  if (EVP_EncryptFinal_ex(context.get(), &nothing, &written) != 1 ||
      EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, static_cast<int>(gcmTagSize), tag.data()) !=
          1) {
    return std::nullopt;
  }
  return box;
}

std::optional<SecretBytes> openAes256Gcm(const SecretBytes& key, std::span<const std::uint8_t> box) {
  if (key.size() != aes256KeySize || box.size() < gcmNonceSize + gcmTagSize ||
      box.size() - gcmNonceSize - gcmTagSize > largestPlaintext) {
    return std::nullopt;
  }
  const auto nonce = box.first(gcmNonceSize);
  const auto ciphertext = box.subspan(gcmNonceSize, box.size() - gcmNonceSize - gcmTagSize);
  std::array<std::uint8_t, gcmTagSize> tag{};
  std::ranges::copy(box.last(gcmTagSize), tag.begin());  // the interface wants it writable
  const auto context = makeContext();
  SecretBytes plaintext(ciphertext.size());
  int written = 0;
  if (!context ||
      EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.reveal().data(), nonce.data()) != 1) {
    return std::nullopt;
  }
  if (!ciphertext.empty() && EVP_DecryptUpdate(context.get(), plaintext.reveal().data(), &written,
                                               ciphertext.data(), static_cast<int>(ciphertext.size())) != 1) {
    return std::nullopt;
  }
  std::uint8_t nothing = 0;
  if (EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, static_cast<int>(gcmTagSize), tag.data()) !=
          1 ||
      EVP_DecryptFinal_ex(context.get(), &nothing, &written) != 1) {
    return std::nullopt;
  }
  return plaintext;
}

}  // namespace murmel::crypto
