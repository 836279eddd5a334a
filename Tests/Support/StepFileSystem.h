#pragma once

#include "Platform/Linux/Files/PosixFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace murmel {

/// The real files, with a say before each system call: let it pass, let it fail, or end the process there.
/// Waiting for the disk is left out, since no test takes the power away.
class StepFileSystem final : public PosixFileSystem {
 public:
  /// Told the number and the name of the call that is about to happen; gives the errno that it fails with.
  using Before = std::function<std::optional<int>(int index, std::string_view call)>;

  void before(Before before) {
    before_ = std::move(before);
    steps_ = 0;
  }
  /// Reads and writes move at most this many bytes at a time.
  void limitTransfers(std::size_t bytes) { transferLimit_ = bytes; }
  /// This call fails with this error every time.
  void failAlways(std::string call, int error) {
    before([call = std::move(call), error](int, std::string_view name) -> std::optional<int> {
      if (name == call) return error;
      return std::nullopt;
    });
  }
  void failNever() { before({}); }
  [[nodiscard]] int steps() const { return steps_; }

  FileResult<UniqueDescriptor> openForReading(const std::filesystem::path& file) override {
    return step("openForReading", [&] { return PosixFileSystem::openForReading(file); });
  }
  FileResult<UniqueDescriptor> createNew(const std::filesystem::path& file) override {
    return step("createNew", [&] { return PosixFileSystem::createNew(file); });
  }
  FileResult<std::uint64_t> size(int descriptor) override {
    return step("size", [&] { return PosixFileSystem::size(descriptor); });
  }
  FileResult<std::size_t> read(int descriptor, std::span<std::uint8_t> bytes) override {
    return step("read", [&] { return PosixFileSystem::read(descriptor, limited(bytes)); });
  }
  FileResult<std::size_t> write(int descriptor, std::span<const std::uint8_t> bytes) override {
    return step("write", [&] { return PosixFileSystem::write(descriptor, limited(bytes)); });
  }
  FileResult<void> synchronize(int) override {
    return step("synchronize", [] { return FileResult<void>(); });
  }
  FileResult<void> synchronizeFolder(const std::filesystem::path&) override {
    return step("synchronizeFolder", [] { return FileResult<void>(); });
  }
  FileResult<void> rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
    return step("rename", [&] { return PosixFileSystem::rename(from, to); });
  }
  FileResult<void> remove(const std::filesystem::path& file) override {
    return step("remove", [&] { return PosixFileSystem::remove(file); });
  }
  FileResult<bool> exists(const std::filesystem::path& path) override {
    return step("exists", [&] { return PosixFileSystem::exists(path); });
  }
  FileResult<std::vector<std::string>> names(const std::filesystem::path& folder) override {
    return step("names", [&] { return PosixFileSystem::names(folder); });
  }
  FileResult<void> makeFolders(const std::filesystem::path& folder) override {
    return step("makeFolders", [&] { return PosixFileSystem::makeFolders(folder); });
  }
  FileResult<void> setPermissions(const std::filesystem::path& file, unsigned mode) override {
    return step("setPermissions", [&] { return PosixFileSystem::setPermissions(file, mode); });
  }
  FileResult<UniqueDescriptor> lock(const std::filesystem::path& file, Duration limit) override {
    return step("lock", [&] { return PosixFileSystem::lock(file, limit); });
  }

 private:
  template <class Bytes>
  Bytes limited(Bytes bytes) const {
    return bytes.first(std::min(bytes.size(), transferLimit_));
  }
  template <class Call>
  auto step(std::string_view name, Call call) -> decltype(call()) {
    const int index = steps_++;
    if (before_) {
      if (const auto error = before_(index, name)) return std::unexpected(*error);
    }
    return call();
  }

  Before before_;
  int steps_ = 0;
  std::size_t transferLimit_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace murmel
