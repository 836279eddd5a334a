#pragma once

#include "Audio/WaveFormat.h"
#include "Foundation/UniqueDescriptor.h"

#include <cstdint>
#include <expected>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace murmel {

/// Reads a WAV file piece by piece, in memory that does not depend on its length.
///
/// Strict about what the samples mean, lenient about how the file ends: a data chunk that is shorter or
/// longer than its size says, or whose size was never filled in, is the whole frames that are there.
class WaveFileReader {
 public:
  /// Errors are one line for a user and begin with the path. A file without samples, and one with a
  /// floating-point sample that is not finite, is an error too; the latter costs one pass through such a
  /// file.
  static std::expected<WaveFileReader, std::string> open(const std::filesystem::path& path);

  [[nodiscard]] const WaveFormat& format() const { return format_; }
  [[nodiscard]] std::uint64_t frameCount() const { return frameCount_; }

  /// Decodes the next frames, interleaved, as many as fit into `output` and are left; gives their number, 0
  /// at the end. Fails when the file can no longer be read.
  std::expected<std::size_t, std::string> read(std::span<float> output);

  /// The next `read` begins with the first frame again.
  void rewind() { position_ = 0; }

 private:
  WaveFileReader(std::filesystem::path path, UniqueDescriptor file)
      : path_(std::move(path)), file_(std::move(file)) {}

  std::expected<void, std::string> findSamples(std::uint64_t fileSize);
  std::expected<void, std::string> checkFinite();
  [[nodiscard]] std::unexpected<std::string> problem(const std::string& reason) const;

  std::filesystem::path path_;
  UniqueDescriptor file_;
  WaveFormat format_;
  std::uint64_t dataOffset_ = 0;  // bytes
  std::uint64_t frameCount_ = 0;
  std::uint64_t position_ = 0;  // frames
  std::vector<std::uint8_t> buffer_;
};

}  // namespace murmel
