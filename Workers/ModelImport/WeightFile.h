#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace murmel::import {

/// One array of weights in a file: 16-bit floating-point numbers, row by row.
struct Weights {
  std::vector<std::uint32_t> shape;
  std::uint64_t offset = 0;  ///< of the first number in the file

  [[nodiscard]] std::uint64_t count() const;
};

/// A Whisper model in CTranslate2's format, which may lie in several files that belong together. Only its
/// table is kept in memory.
class WeightFile {
 public:
  /// The error is a sentence for the user.
  static std::expected<WeightFile, std::string> open(const std::vector<std::filesystem::path>& parts);

  /// Nothing when there is no such array, or its numbers are of another kind.
  [[nodiscard]] const Weights* find(const std::string& name) const;
  [[nodiscard]] bool read(std::uint64_t offset, std::span<std::uint8_t> bytes) const;

 private:
  struct Part {
    UniqueDescriptor file;
    std::uint64_t begin;
    std::uint64_t end;
  };
  class Cursor;

  std::expected<void, std::string> readTable();

  std::vector<Part> parts_;
  std::map<std::string, Weights> weights_;
};

}  // namespace murmel::import
