#pragma once

#include "Foundation/Crypto/Crypto.h"
#include "Foundation/Crypto/Ed25519.h"
#include "Support/FileBytes.h"
#include "Support/Testing.h"

namespace murmel::test {

/// The document as a feed that `key` has signed.
inline std::string signedFeed(const ed25519::SigningKey& key, const std::string& document) {
  const std::string header = "murmel-update-feed 1\n";
  return header + "key " + crypto::hexadecimal(key.publicKey()) + "\nsignature " +
         crypto::hexadecimal(key.sign(bytesOf(header + document))) + "\n" + document;
}

}  // namespace murmel::test
