#pragma once

#include "Foundation/Crypto/Crypto.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

namespace murmel::import {

/// Writes a file piece by piece and takes its digest on the way. It gets its name when it is whole and what
/// it must be.
class ModelWriter {
 public:
  explicit ModelWriter(std::filesystem::path file);
  /// Removes what was not finished.
  ~ModelWriter();
  ModelWriter(const ModelWriter&) = delete;
  ModelWriter& operator=(const ModelWriter&) = delete;

  void write(std::span<const std::uint8_t> bytes);
  void write(std::string_view text);
  void write(std::int32_t number);

  /// `sha256`: in hexadecimal; empty for any. The error is a sentence for the user.
  std::expected<void, std::string> finish(std::string_view sha256);

 private:
  std::filesystem::path file_;
  std::filesystem::path unfinished_;
  std::ofstream stream_;
  crypto::Sha256 digest_;
};

}  // namespace murmel::import
