#include "Workers/ModelDownloader/PartialFile.h"

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
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

std::filesystem::path PartialFile::pathIn(const std::filesystem::path& folder, std::string_view sha256) {
  return folder / std::string(sha256).append(bytesSuffix);
}

void PartialFile::discard(const std::filesystem::path& folder, std::string_view sha256) {
  ::unlink(pathIn(folder, sha256).c_str());
  ::unlink((folder / std::string(sha256).append(tagSuffix)).c_str());
}

std::expected<PartialFile, FileError> PartialFile::open(const std::filesystem::path& folder,
                                                        std::string_view sha256) {
  auto path = pathIn(folder, sha256);
  UniqueDescriptor descriptor(
      ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
  struct stat status {};
  if (!descriptor || ::fstat(descriptor.get(), &status) != 0)
    return std::unexpected(FileError::from("create the model's temporary file", errno));
  if (!S_ISREG(status.st_mode))
    return std::unexpected(FileError{false, "The model's temporary file is not a file."});
  return PartialFile(std::move(path), std::move(descriptor), status.st_size);
}

PartialFile::PartialFile(std::filesystem::path path, UniqueDescriptor descriptor, std::int64_t size)
    : path_(std::move(path)), tagPath_(path_), descriptor_(std::move(descriptor)), size_(size) {
  tagPath_.replace_extension(tagSuffix);
}

std::string PartialFile::entityTag() const {
  std::ifstream file(tagPath_);
  std::string tag;
  std::getline(file, tag);
  return tag.size() <= longestTag ? tag : std::string();
}

void PartialFile::rememberEntityTag(std::string_view tag) const {
  if (tag.empty() || tag.size() > longestTag) {
    discardTag();
    return;
  }
  std::ofstream(tagPath_, std::ios::trunc) << tag << '\n';
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
  const auto digest = crypto::hexadecimal(std::exchange(hash_, crypto::Sha256()).finish());
  hashed_ = 0;
  return digest;
}

std::expected<void, FileError> PartialFile::sync() const {
  if (::fsync(descriptor_.get()) != 0) return std::unexpected(FileError::from("write the model", errno));
  return {};
}

void PartialFile::discard() const {
  ::unlink(path_.c_str());
  discardTag();
}

void PartialFile::discardTag() const {
  ::unlink(tagPath_.c_str());
}

}  // namespace murmel::downloader
