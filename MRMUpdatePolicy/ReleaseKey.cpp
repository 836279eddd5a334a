#include "MRMUpdatePolicy/ReleaseKey.h"

#include "Foundation/Crypto/Crypto.h"

namespace murmel {

std::string_view releaseKeyFingerprint() {
  return MURMEL_RELEASE_KEY;
}

std::string_view updateFeedURL() {
  return MURMEL_UPDATE_FEED_URL;
}

std::optional<ed25519::PublicKey> publicKeyFromDigits(std::string_view digits) {
  return crypto::fromHexadecimal<ed25519::publicKeySize>(digits);
}

std::optional<ed25519::Signature> signatureFromDigits(std::string_view digits) {
  return crypto::fromHexadecimal<ed25519::signatureSize>(digits);
}

std::string fingerprint(const ed25519::PublicKey& key) {
  return crypto::hexadecimal(crypto::sha256(key));
}

}  // namespace murmel
