#pragma once

#include "Foundation/Crypto/Ed25519.h"

#include <filesystem>
#include <optional>
#include <string>

namespace murmel {

/// The code signature of an executable: a text file beside it, named like it with ".manifest" at the end, of
/// these five lines and nothing else.
///
///     murmel-executable-manifest 1
///     name mrm-fluidaudio-worker
///     sha256 <64 lower-case hexadecimal digits>
///     key <64: the Ed25519 public key>
///     signature <128: over every byte above this line>
///
/// The name keeps a signed executable from standing in for another one. The fingerprint of the key is the
/// team.
struct SignedExecutableManifest {
  /// Lower-case hexadecimal SHA-256 of the public key: what an application compares with its own.
  static std::string team(const ed25519::PublicKey& key);

  /// The team that signed `executable` as it is now. Nothing without a manifest, with one that is malformed,
  /// for another name or other contents, or whose signature does not hold. Reads the whole file; any thread.
  static std::optional<std::string> teamOf(const std::filesystem::path& executable);
  /// The same with a manifest that lies elsewhere.
  static std::optional<std::string> teamOf(const std::filesystem::path& executable,
                                           const std::filesystem::path& manifest);

  /// Where the manifest of `executable` lies unless somebody says otherwise.
  static std::filesystem::path manifestOf(const std::filesystem::path& executable);

  /// Writes the manifest of `executable`, beside it or elsewhere. False when one of the files cannot be read
  /// or written.
  static bool sign(const std::filesystem::path& executable, const ed25519::SigningKey& key) {
    return sign(executable, manifestOf(executable), key);
  }
  static bool sign(const std::filesystem::path& executable, const std::filesystem::path& manifest,
                   const ed25519::SigningKey& key);
};

}  // namespace murmel
