#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <expected>
#include <filesystem>
#include <string>

namespace murmel {

/// Where one start of an inference server keeps what it needs in the file system: the path of its socket, and
/// a folder for its key that only this user can enter. Both are gone when the place is destroyed.
///
/// The folder is locked as long as the place exists, in whatever process: what a killed application left
/// behind is recognised by the missing lock. Not thread-safe.
class QwenServerPlace {
 public:
  /// Makes a place with a fresh name, and removes the places of dead processes first. It lies in
  /// `temporaryDirectory`, which only this user may be able to enter. The error is a short reason: "private
  /// temporary directory unavailable", "private socket path is too long".
  static std::expected<QwenServerPlace, std::string> create(const std::filesystem::path& temporaryDirectory);

  QwenServerPlace(QwenServerPlace&&) noexcept = default;
  QwenServerPlace& operator=(QwenServerPlace&&) = delete;
  ~QwenServerPlace();

  /// "mrm-q-", eight digits, ".sock": short, because the system bounds it. Nothing is there yet.
  [[nodiscard]] const std::filesystem::path& socketURL() const { return socketURL_; }
  /// Permissions 0700.
  [[nodiscard]] const std::filesystem::path& keyDirectory() const { return keyDirectory_; }

 private:
  QwenServerPlace(std::filesystem::path socketURL, std::filesystem::path keyDirectory, UniqueDescriptor lock);

  std::filesystem::path socketURL_;
  std::filesystem::path keyDirectory_;
  UniqueDescriptor lock_;  ///< empty when moved from
};

}  // namespace murmel
