#include "Workers/ModelDownloader/PartialFile.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace murmel::downloader {

namespace {

constexpr std::string_view bytesSuffix = ".part";
constexpr std::string_view tagSuffix = ".etag";
constexpr std::size_t readSize = 1 << 20;
/// A tag is a few dozen characters; what is longer is not kept.
constexpr std::size_t longestTag = 256;

}  // namespace

FileError FileError::from(std::string_view doing, int error) {
  if (error == ENOSPC || error == EDQUOT || error == EFBIG)
    return {true, "There is not enough disk space for the model."};
  return {false, std::string("Cannot ").append(doing) + ": " + std::generic_category().message(error) + "."};
}

bool isPartialFileName(std::string_view name) {
  const bool known = name.ends_with(bytesSuffix) || name.ends_with(tagSuffix);
  return known && name.size() == 64 + bytesSuffix.size() &&
         name.substr(0, 64).find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

std::string PartialFile::nameOf(std::string_view sha256) {
  return std::string(sha256).append(bytesSuffix);
}

void PartialFile::discard(const OwnFolder& folder, std::string_view sha256) {
  folder.remove(nameOf(sha256));
  folder.remove(std::string(sha256).append(tagSuffix));
}

std::expected<PartialFile, FileError> PartialFile::open(OwnFolder folder, std::string_view sha256) {
  auto descriptor = folder.write(nameOf(sha256));
  struct stat status {};
  if (!descriptor || ::fstat(descriptor.get(), &status) != 0)
    return std::unexpected(FileError::from("create the model's temporary file", errno));
  return PartialFile(std::move(folder), sha256, std::move(descriptor), status.st_size);
}

PartialFile::PartialFile(OwnFolder folder, std::string_view sha256, UniqueDescriptor descriptor,
                         std::int64_t size)
    : folder_(std::move(folder)),
      name_(nameOf(sha256)),
      tagName_(std::string(sha256).append(tagSuffix)),
      descriptor_(std::move(descriptor)),
      size_(size) {}

std::string PartialFile::entityTag() const {
  const auto file = folder_.read(tagName_);
  std::array<char, longestTag + 1> bytes{};
  const auto count = file ? ::read(file.get(), bytes.data(), bytes.size()) : 0;
  if (count <= 0) return {};
  const std::string_view text(bytes.data(), static_cast<std::size_t>(count));
  const auto end = text.find('\n');
  return end == std::string_view::npos ? std::string() : std::string(text.substr(0, end));
}

void PartialFile::rememberEntityTag(std::string_view tag) const {
  discardTag();
  if (tag.empty() || tag.size() >= longestTag) return;
  const auto file = folder_.create(tagName_);
  const auto line = std::string(tag) + "\n";
  if (file && ::write(file.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size()))
    discardTag();
}

std::expected<void, FileError> PartialFile::append(std::span<const std::uint8_t> bytes) {
  if (const auto caughtUp = catchUp(); !caughtUp) return caughtUp;
  while (!bytes.empty()) {
    const auto count = ::pwrite(descriptor_.get(), bytes.data(), bytes.size(), size_);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::unexpected(FileError::from("write the model", count < 0 ? errno : ENOSPC));
    const auto written = static_cast<std::size_t>(count);
    hash_.update(bytes.first(written));
    size_ += count;
    hashed_ += count;
    bytes = bytes.subspan(written);
  }
  return {};
}

std::expected<void, FileError> PartialFile::truncate() {
  if (::ftruncate(descriptor_.get(), 0) != 0)
    return std::unexpected(FileError::from("empty the model's temporary file", errno));
  size_ = 0;
  hashed_ = 0;
  hash_ = crypto::Sha256();
  return {};
}

std::expected<void, FileError> PartialFile::catchUp() {
  if (hashed_ == size_) return {};
  std::vector<std::uint8_t> buffer(readSize);
  while (hashed_ < size_) {
    const auto count = ::pread(descriptor_.get(), buffer.data(), buffer.size(), hashed_);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0)
      return std::unexpected(FileError::from("read the model's temporary file", count < 0 ? errno : EIO));
    hash_.update({buffer.data(), static_cast<std::size_t>(count)});
    hashed_ += count;
  }
  return {};
}

std::expected<std::string, FileError> PartialFile::sha256() {
  if (const auto caughtUp = catchUp(); !caughtUp) return std::unexpected(caughtUp.error());
  auto digest = crypto::hexadecimal(std::exchange(hash_, crypto::Sha256()).finish());
  hashed_ = 0;
  return digest;
}

std::expected<void, FileError> PartialFile::sync() const {
  if (::fsync(descriptor_.get()) != 0) return std::unexpected(FileError::from("write the model", errno));
  return {};
}

void PartialFile::discard() const {
  folder_.remove(name_);
  discardTag();
}

void PartialFile::discardTag() const {
  folder_.remove(tagName_);
}

}  // namespace murmel::downloader
