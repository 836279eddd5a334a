#pragma once

#include "Foundation/Crypto/Ed25519.h"

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// Who may release: the fingerprint of the key that signs feeds and executables, the lower-case hexadecimal
/// SHA-256 of its public half, as the build was told (MURMEL_RELEASE_KEY). Empty in a build that belongs to
/// no release; such a build finds no update.
std::string_view releaseKeyFingerprint();

/// Where this build looks for the feed (MURMEL_UPDATE_FEED_URL); empty where it is not told.
std::string_view updateFeedURL();

/// Lower-case digits of exactly one key or signature; nothing for anything else.
std::optional<ed25519::PublicKey> publicKeyFromDigits(std::string_view digits);
std::optional<ed25519::Signature> signatureFromDigits(std::string_view digits);

/// The fingerprint of a key.
std::string fingerprint(const ed25519::PublicKey& key);

}  // namespace murmel
