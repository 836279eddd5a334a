#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Workers/ModelDownloader/FileError.h"

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel::downloader {

/// A folder that is open, and what is done in it by name: whatever happens to the path meanwhile, it is this
/// folder. No link is followed, nothing but regular files is opened, and no file is written that has a second
/// name elsewhere.
class OwnFolder {
 public:
  /// `path` may lead through links: it is the user's choice where the store is. Made when it is missing,
  /// private to the user.
  static std::expected<OwnFolder, FileError> open(const std::filesystem::path& path);

  /// The folder at `path` below this one, made when it is missing. A link on the way is an error.
  [[nodiscard]] std::expected<OwnFolder, FileError> below(const std::filesystem::path& path) const;
  /// The same, where a link or a file that has the name is replaced: for names that nobody else uses.
  [[nodiscard]] std::expected<OwnFolder, FileError> belowForSure(const std::string& name) const;

  /// A folder right below this one, where there is one.
  [[nodiscard]] std::optional<OwnFolder> existing(const std::string& name) const;

  /// Nothing when there is no regular file of that name, or it may not be read. Sets errno.
  [[nodiscard]] UniqueDescriptor read(const std::string& name) const;
  /// For reading and writing what is there; anything that is not a plain file of one name is replaced by an
  /// empty one. Sets errno.
  [[nodiscard]] UniqueDescriptor write(const std::string& name) const;
  /// A file that was not there before. Sets errno.
  [[nodiscard]] UniqueDescriptor create(const std::string& name) const;
  /// Of a regular file, 0 for anything else.
  [[nodiscard]] std::int64_t size(const std::string& name) const;
  void remove(const std::string& name) const;
  void removeFolder(const std::string& name) const;
  [[nodiscard]] std::vector<std::string> names() const;
  /// Replaces a file or a link, never what a link points to.
  [[nodiscard]] std::expected<void, FileError> moveTo(const std::string& name, const OwnFolder& folder,
                                                      const std::string& newName) const;
  [[nodiscard]] std::expected<void, FileError> sync() const;
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }

 private:
  explicit OwnFolder(UniqueDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  UniqueDescriptor descriptor_;
};

}  // namespace murmel::downloader
