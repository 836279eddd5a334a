#include "Audio/WaveFileReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel {

namespace {

constexpr std::uint64_t riffHeaderSize = 12;
constexpr std::uint64_t chunkHeaderSize = 8;
// Real files have a handful; a damaged one may seem to consist of empty chunks.
constexpr int mostChunksBeforeSamples = 1'000;
// The longest format description that is looked at.
constexpr std::size_t formatBytesRead = 64;
constexpr std::size_t framesPerCheck = 16'384;

std::string systemReason(int error) {
  return std::error_code(error, std::generic_category()).message();
}

/// Reads `bytes.size()` bytes at `offset`, fewer at the end of the file; the error is an errno.
std::expected<std::size_t, int> readAt(int file, std::uint64_t offset, std::span<std::uint8_t> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const auto count =
        ::pread(file, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
    if (count == 0) break;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::unexpected(errno);
    done += static_cast<std::size_t>(count);
  }
  return done;
}

std::string_view tagAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
  return {reinterpret_cast<const char*>(&bytes[offset]), 4};
}

std::uint32_t sizeAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
  std::uint32_t size = 0;
  for (std::size_t index = 0; index < 4; ++index)
    size |= static_cast<std::uint32_t>(bytes[offset + index]) << (8 * index);
  return size;
}

}  // namespace

std::expected<WaveFileReader, std::string> WaveFileReader::open(const std::filesystem::path& path) {
  // Not blocking: opening a pipe that nobody writes to would wait for ever.
  WaveFileReader reader(path, UniqueDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)));
  if (!reader.file_) return reader.problem(systemReason(errno));
  struct stat status {};
  if (::fstat(reader.file_.get(), &status) != 0) return reader.problem(systemReason(errno));
  if (!S_ISREG(status.st_mode)) return reader.problem("it is not a regular file");
  if (auto found = reader.findSamples(static_cast<std::uint64_t>(status.st_size)); !found)
    return std::unexpected(std::move(found.error()));
  if (reader.format_.isFloatingPoint()) {
    if (auto checked = reader.checkFinite(); !checked) return std::unexpected(std::move(checked.error()));
  }
  return reader;
}

std::unexpected<std::string> WaveFileReader::problem(const std::string& reason) const {
  return std::unexpected(path_.string() + ": " + reason);
}

std::expected<void, std::string> WaveFileReader::findSamples(std::uint64_t fileSize) {
  std::array<std::uint8_t, riffHeaderSize> riff{};
  const auto begun = readAt(file_.get(), 0, riff);
  if (!begun) return problem(systemReason(begun.error()));
  if (*begun >= 4 && (tagAt(riff, 0) == "RF64" || tagAt(riff, 0) == "RIFX"))
    return problem(fmt::format("WAV files of the kind {} are not supported", tagAt(riff, 0)));
  if (*begun < riff.size() || tagAt(riff, 0) != "RIFF" || tagAt(riff, 8) != "WAVE")
    return problem("it is not a WAV file");
  const std::uint64_t riffEnd = sizeAt(riff, 4) + chunkHeaderSize;

  std::optional<WaveFormat> format;
  std::uint64_t offset = riffHeaderSize;
  for (int chunk = 0; chunk < mostChunksBeforeSamples && offset + chunkHeaderSize <= fileSize; ++chunk) {
    std::array<std::uint8_t, chunkHeaderSize> header{};
    const auto read = readAt(file_.get(), offset, header);
    if (!read) return problem(systemReason(read.error()));
    if (*read < header.size()) break;
    offset += chunkHeaderSize;
    std::uint64_t size = sizeAt(header, 4);
    if (tagAt(header, 0) == "fmt ") {
      std::array<std::uint8_t, formatBytesRead> contents{};
      const auto wanted = std::min<std::uint64_t>({size, contents.size(), fileSize - offset});
      const auto got = readAt(file_.get(), offset, std::span(contents).first(wanted));
      if (!got) return problem(systemReason(got.error()));
      const auto parsed = WaveFormat::parse(std::span(contents).first(*got));
      if (!parsed) return problem(parsed.error());
      format = *parsed;
    } else if (tagAt(header, 0) == "data") {
      if (!format) return problem("its samples come before their format");
      // A recorder that was killed leaves zeros where the sizes should be: its samples go on to the end.
      if (size == 0 && riffEnd <= offset) size = fileSize - offset;
      format_ = *format;
      dataOffset_ = offset;
      frameCount_ = std::min(size, fileSize - offset) / format_.bytesPerFrame();
      if (frameCount_ == 0) return problem("it has no samples");
      return {};
    }
    offset += size + size % 2;  // chunks begin at even offsets
  }
  return problem(format ? "it has no samples" : "it is not a complete WAV file");
}

std::expected<void, std::string> WaveFileReader::checkFinite() {
  std::vector<float> samples(framesPerCheck * format_.channelCount);
  while (true) {
    const auto firstFrame = position_;
    const auto frames = read(samples);
    if (!frames) return std::unexpected(frames.error());
    if (*frames == 0) break;
    const auto read = std::span(samples).first(*frames * format_.channelCount);
    const auto bad = std::ranges::find_if(read, [](float sample) { return !std::isfinite(sample); });
    if (bad == read.end()) continue;
    const auto frame = firstFrame + static_cast<std::uint64_t>(bad - read.begin()) / format_.channelCount;
    return problem(fmt::format("the sample at {:.3f} s is not a number",
                               static_cast<double>(frame) / format_.sampleRate));
  }
  rewind();
  return {};
}

std::expected<std::size_t, std::string> WaveFileReader::read(std::span<float> output) {
  const auto frames = static_cast<std::size_t>(
      std::min<std::uint64_t>(output.size() / format_.channelCount, frameCount_ - position_));
  const auto frameSize = format_.bytesPerFrame();
  if (buffer_.size() < frames * frameSize) buffer_.resize(frames * frameSize);
  const auto wanted = std::span(buffer_).first(frames * frameSize);
  const auto read = readAt(file_.get(), dataOffset_ + position_ * frameSize, wanted);
  if (!read) return problem(systemReason(read.error()));
  if (*read < wanted.size()) return problem("the file became shorter while it was read");
  decodeSamples(format_.encoding, wanted, output.first(frames * format_.channelCount));
  position_ += frames;
  return frames;
}

}  // namespace murmel
