#pragma once

#include "Foundation/Crypto/SecretBytes.h"

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>

namespace murmel {

/// The file through which an inference server learns its bearer token, so that it stands neither on a command
/// line nor in an environment. Removed when the object goes: the server reads it once, as it starts.
class QwenAPIKeyFile {
 public:
  /// 32 random bytes in hexadecimal.
  static constexpr std::size_t tokenSize = 64;

  /// A fresh token; empty when the system has no random bytes.
  static SecretBytes makeToken();

  /// Writes `token` whole into a file with permissions 0600 and a fresh name in `directory`, which is made
  /// with permissions 0700 when it is missing. The error is "protected API key file unavailable", also for a
  /// token of another size: a server that reads an empty file would ask nobody for a token. Nothing is left
  /// behind then.
  static std::expected<QwenAPIKeyFile, std::string> create(const SecretBytes& token,
                                                           const std::filesystem::path& directory);

  QwenAPIKeyFile(QwenAPIKeyFile&& other) noexcept;
  QwenAPIKeyFile& operator=(QwenAPIKeyFile&&) = delete;
  ~QwenAPIKeyFile() { remove(); }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// Removes the file now.
  void remove();

 private:
  explicit QwenAPIKeyFile(std::filesystem::path path) : path_(std::move(path)) {}

  std::filesystem::path path_;  ///< empty when removed
};

}  // namespace murmel
