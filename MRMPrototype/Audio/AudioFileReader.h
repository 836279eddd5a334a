#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

struct sf_private_tag;

namespace murmel {

/// Reads a recording piece by piece, in memory that does not depend on its length: WAV, RF64, FLAC, Ogg,
/// Opus, MP3 and what else libsndfile knows. Lenient about how a file ends: what was cut off or never
/// finished is the whole frames that are there.
class AudioFileReader {
 public:
  /// The name that stands for the standard input.
  static constexpr const char* standardInput = "-";
  /// What is piped in cannot be read twice, which some formats need: up to this much of it is held in memory.
  static constexpr std::uint64_t largestPipe = std::uint64_t{1} << 30U;

  /// Errors are one line for a user and begin with the path. The wait for what is piped in ends when `stop`,
  /// a descriptor, has something to read.
  static std::expected<AudioFileReader, std::string> open(const std::filesystem::path& path, int stop = -1);

  [[nodiscard]] double sampleRate() const { return sampleRate_; }  ///< Hz
  [[nodiscard]] unsigned channelCount() const { return channelCount_; }
  /// What the file says of itself: for a display, and for nothing else.
  [[nodiscard]] std::uint64_t expectedFrames() const { return expectedFrames_; }

  /// Decodes the next frames, interleaved, as many as fit into `output` and are left; gives their number, 0
  /// at the end. Fails when the rest cannot be read.
  std::expected<std::size_t, std::string> read(std::span<float> output);
  /// The next `read` begins with the first frame again.
  void rewind();

 private:
  struct Closer {
    void operator()(sf_private_tag* file) const;
  };

  AudioFileReader() = default;

  std::string name_;
  std::unique_ptr<sf_private_tag, Closer> file_;
  double sampleRate_ = 0;
  unsigned channelCount_ = 0;
  std::uint64_t expectedFrames_ = 0;
};

}  // namespace murmel
