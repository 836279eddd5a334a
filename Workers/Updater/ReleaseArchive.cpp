#include "Workers/Updater/ReleaseArchive.h"

#include "Foundation/Crypto/Crypto.h"
#include "Foundation/WriteAll.h"
#include "Workers/ModelDownloader/FileError.h"

#include <cerrno>
#include <filesystem>
#include <memory>
#include <vector>

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace murmel::updater {

namespace {

constexpr std::size_t pieceSize = 1 << 20;
constexpr std::int64_t largestTree = std::int64_t{8} << 30;
constexpr mode_t folderMode = 0755;
constexpr mode_t fileModes = 0755;
constexpr const char* notWhole = "The new version did not arrive as it was released.";
constexpr const char* notAsExpected = "The new version holds something that does not belong there.";

std::unexpected<std::string> copyFailure(std::string_view doing) {
  return std::unexpected(downloader::FileError::from(doing, errno).message);
}

bool staysInside(const std::filesystem::path& path) {
  if (path.empty() || path.is_absolute()) return false;
  int depth = 0;
  for (const auto& part : path) {
    if (part == "..")
      --depth;
    else if (part != "." && !part.empty())
      ++depth;
    if (depth < 0) return false;
  }
  return true;
}

/// A name is taken as it is written; a link may go up, but not out.
bool isWelcome(archive_entry* entry) {
  const auto* name = archive_entry_pathname(entry);
  if (name == nullptr || archive_entry_hardlink(entry) != nullptr) return false;
  const std::filesystem::path path(name);
  for (const auto& part : path) {
    if (part == "..") return false;
  }
  if (!staysInside(path)) return path == "./" || path == ".";
  const auto type = archive_entry_filetype(entry);
  if (type == AE_IFREG || type == AE_IFDIR) return true;
  const auto* target = type == AE_IFLNK ? archive_entry_symlink(entry) : nullptr;
  return target != nullptr && !std::filesystem::path(target).is_absolute() &&
         staysInside(path.parent_path() / target);
}

struct ReaderDeleter {
  void operator()(archive* reader) const { archive_read_free(reader); }
};
struct WriterDeleter {
  void operator()(archive* writer) const { archive_write_free(writer); }
};

std::expected<void, std::string> copyContents(archive* reader, archive* writer, std::int64_t& left) {
  const void* piece = nullptr;
  std::size_t size = 0;
  la_int64_t offset = 0;
  while (true) {
    const int status = archive_read_data_block(reader, &piece, &size, &offset);
    if (status == ARCHIVE_EOF) return {};
    if (status != ARCHIVE_OK) return std::unexpected(notWhole);
    left -= static_cast<std::int64_t>(size);
    if (left < 0) return std::unexpected(notAsExpected);
    if (archive_write_data_block(writer, piece, size, offset) != ARCHIVE_OK) {
      errno = archive_errno(writer);
      return copyFailure("unpack the new version");
    }
  }
}

}  // namespace

std::expected<UniqueDescriptor, std::string> verifiedCopy(int source, int folder, std::int64_t size,
                                                          std::string_view sha256) {
  UniqueDescriptor copy(::openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
  if (!copy) return copyFailure("unpack the new version");
  std::vector<std::uint8_t> piece(pieceSize);
  crypto::Sha256 hash;
  std::int64_t copied = 0;
  while (true) {
    const auto count = ::read(source, piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return copyFailure("read the new version");
    if (count == 0) break;
    copied += count;
    if (copied > size) return std::unexpected(notWhole);
    const auto bytes = std::span<const std::uint8_t>(piece).first(static_cast<std::size_t>(count));
    hash.update(bytes);
    if (!writeAll(copy.get(), bytes)) return copyFailure("unpack the new version");
  }
  if (copied != size || crypto::hexadecimal(hash.finish()) != sha256) return std::unexpected(notWhole);
  return copy;
}

std::expected<void, std::string> unpackArchive(int source, int folder) {
  // The library writes below the working folder; it is this process's own.
  if (::lseek(source, 0, SEEK_SET) != 0 || ::fchdir(folder) != 0)
    return copyFailure("unpack the new version");
  ::umask(0022);
  const std::unique_ptr<archive, ReaderDeleter> reader(archive_read_new());
  archive_read_support_format_tar(reader.get());
  archive_read_support_filter_gzip(reader.get());
  archive_read_support_filter_xz(reader.get());
  archive_read_support_filter_zstd(reader.get());
  if (archive_read_open_fd(reader.get(), source, pieceSize) != ARCHIVE_OK) return std::unexpected(notWhole);
  const std::unique_ptr<archive, WriterDeleter> writer(archive_write_disk_new());
  archive_write_disk_set_options(writer.get(), ARCHIVE_EXTRACT_SECURE_SYMLINKS |
                                                   ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                                                   ARCHIVE_EXTRACT_SECURE_NOABSOLUTEPATHS |
                                                   ARCHIVE_EXTRACT_NO_OVERWRITE | ARCHIVE_EXTRACT_PERM);
  auto left = largestTree;
  while (true) {
    archive_entry* entry = nullptr;
    const int status = archive_read_next_header(reader.get(), &entry);
    if (status == ARCHIVE_EOF) return {};
    if (status != ARCHIVE_OK) return std::unexpected(notWhole);
    if (!isWelcome(entry)) return std::unexpected(notAsExpected);
    if (archive_entry_filetype(entry) == AE_IFDIR)
      archive_entry_set_perm(entry, folderMode);
    else
      archive_entry_set_perm(entry, archive_entry_perm(entry) & fileModes);
    if (archive_write_header(writer.get(), entry) != ARCHIVE_OK) {
      errno = archive_errno(writer.get());
      return copyFailure("unpack the new version");
    }
    if (const auto copied = copyContents(reader.get(), writer.get(), left); !copied) return copied;
    if (archive_write_finish_entry(writer.get()) != ARCHIVE_OK) {
      errno = archive_errno(writer.get());
      return copyFailure("unpack the new version");
    }
  }
}

}  // namespace murmel::updater
