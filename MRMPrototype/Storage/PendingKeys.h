#pragma once

#include "Platform/FileSystem.h"

#include <string>
#include <vector>

namespace murmel {

/// The identifiers of keys that an operation on a sealed file may leave behind, written beside the file
/// before the keys come to be and removed when only the needed one is left. After a crash they tell which
/// keys to delete. The caller holds the sealed file's lock.
class PendingKeys {
 public:
  static constexpr std::size_t mostIdentifiers = 64;

  struct Contents {
    std::vector<std::string> identifiers;
    /// The user has deleted the data; the keys are, or may be, gone, and the files must follow.
    bool erasing = false;
  };

  PendingKeys(FileSystem& files, const std::filesystem::path& sealedFile);

  /// Whether there is anything to load or to clear away.
  [[nodiscard]] FileResult<bool> exists() const;
  /// Empty contents when there is no such file, or one that is too large to be ours.
  [[nodiscard]] FileResult<Contents> load() const;
  /// Survives the end of the process, not necessarily that of the machine: a key too many is then the worst
  /// case. Keeps the last `mostIdentifiers`: a key that nothing names any more opens nothing either.
  FileResult<void> save(const Contents& contents) const;
  FileResult<void> clear() const;

 private:
  FileSystem& files_;
  std::filesystem::path path_;
};

}  // namespace murmel
