#pragma once

#include "Foundation/Crypto/Crypto.h"
#include "Foundation/UniqueDescriptor.h"
#include "Workers/ModelDownloader/FileError.h"
#include "Workers/ModelDownloader/OwnFolder.h"

#include <cstdint>
#include <expected>
#include <span>
#include <string>
#include <string_view>

namespace murmel::downloader {

/// The bytes of a file that is still arriving, kept under the digest that it must have, with a running digest
/// of what is there. Survives the process: what was written is there at the next start.
class PartialFile {
 public:
  /// Opens or creates it in `folder`. Nothing is read yet.
  static std::expected<PartialFile, FileError> open(OwnFolder folder, std::string_view sha256);

  static std::string nameOf(std::string_view sha256);
  /// Removes the partial file of a content and its tag, if they are there.
  static void discard(const OwnFolder& folder, std::string_view sha256);

  [[nodiscard]] std::int64_t size() const { return size_; }
  /// The server's tag of the bytes that are there; empty where none is known.
  [[nodiscard]] std::string entityTag() const;
  /// Replaces the tag. A tag that cannot be kept costs a second transfer at worst, so nothing is reported.
  void rememberEntityTag(std::string_view tag) const;

  /// Writes at the end. After an error the file holds what could be written.
  std::expected<void, FileError> append(std::span<const std::uint8_t> bytes);
  std::expected<void, FileError> truncate();
  /// The digest of what is there, in hexadecimal; reads what this object has not written itself.
  std::expected<std::string, FileError> sha256();
  /// Makes the bytes survive a power cut.
  std::expected<void, FileError> sync() const;
  /// Removes it and its tag from the disk.
  void discard() const;
  /// Removes the tag only: the bytes have been moved to their place.
  void discardTag() const;

  /// Brings the running digest up to what is on the disk. May read all of it.
  std::expected<void, FileError> catchUp();

  [[nodiscard]] const OwnFolder& folder() const { return folder_; }
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  PartialFile(OwnFolder folder, std::string_view sha256, UniqueDescriptor descriptor, std::int64_t size);

  OwnFolder folder_;
  std::string name_;
  std::string tagName_;
  UniqueDescriptor descriptor_;
  std::int64_t size_;
  crypto::Sha256 hash_;
  std::int64_t hashed_ = 0;  ///< the first bytes that `hash_` has seen
};

/// Whether a file name in the folder of partial files is one of ours.
bool isPartialFileName(std::string_view name);

}  // namespace murmel::downloader
