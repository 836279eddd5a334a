#pragma once

#include "Platform/FileSystem.h"

namespace murmel {

/// The files of the machine.
class PosixFileSystem : public FileSystem {
 public:
  FileResult<UniqueDescriptor> openForReading(const std::filesystem::path& file) override;
  FileResult<UniqueDescriptor> createNew(const std::filesystem::path& file) override;
  FileResult<std::uint64_t> size(int descriptor) override;
  FileResult<std::size_t> read(int descriptor, std::span<std::uint8_t> bytes) override;
  FileResult<std::size_t> write(int descriptor, std::span<const std::uint8_t> bytes) override;
  FileResult<void> synchronize(int descriptor) override;
  FileResult<void> synchronizeFolder(const std::filesystem::path& folder) override;
  FileResult<void> rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  FileResult<void> remove(const std::filesystem::path& file) override;
  std::filesystem::path target(const std::filesystem::path& path) override;
  FileResult<bool> exists(const std::filesystem::path& path) override;
  FileResult<std::vector<std::string>> names(const std::filesystem::path& folder) override;
  FileResult<void> makeFolders(const std::filesystem::path& folder) override;
  FileResult<void> setPermissions(const std::filesystem::path& file, unsigned mode) override;
  void excludeFromBackups(const std::filesystem::path& file) override;
  FileResult<UniqueDescriptor> lock(const std::filesystem::path& file, Duration limit) override;
};

}  // namespace murmel
