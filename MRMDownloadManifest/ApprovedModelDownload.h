#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// The model host that every entry comes from.
inline constexpr std::string_view modelHostBaseURL = "https://huggingface.co/";

/// One file that may be downloaded: pinned to a revision of a repository and to a digest.
///
/// The text is not owned: the manifest's is compiled in, and a list made elsewhere must outlive its entries.
struct ApprovedModelDownload {
  /// Stable key, used between the application and the downloader.
  std::string_view identifier;
  std::string_view repository;
  /// Commit of the repository.
  std::string_view revision;
  /// Path inside the repository.
  std::string_view file;
  /// 64 lower-case hexadecimal digits.
  std::string_view sha256;
  /// Path inside the model's folder; set for the speech models.
  std::optional<std::string_view> relativePath;
  /// Exact size in bytes; set for the speech models.
  std::optional<std::int64_t> byteCount;
  /// The model's folder inside the store.
  std::string_view folder;
  /// Bytes beyond which a body cannot be the file, where its size is not known.
  std::int64_t largest = std::int64_t{4} << 30;
  /// Somebody has seen the file at its address.
  bool isHostConfirmed = true;

  /// The address of the file on `host`, which ends in "/".
  [[nodiscard]] std::string url(std::string_view host = modelHostBaseURL) const {
    std::string address(host);
    address.append(repository).append("/resolve/").append(revision).append("/").append(file);
    return address.append("?download=true");
  }

  /// Where the file belongs, relative to the root of the store.
  [[nodiscard]] std::string storePath() const {
    const auto slash = file.rfind('/');
    const auto name = slash == std::string_view::npos ? file : file.substr(slash + 1);
    return std::string(folder).append("/").append(relativePath.value_or(name));
  }

  friend bool operator==(const ApprovedModelDownload&, const ApprovedModelDownload&) = default;
};

}  // namespace murmel
