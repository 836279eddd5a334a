#pragma once

#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// One line of the model downloader (docs/model-downloader-protocol.md).
struct DownloaderEvent {
  enum class Kind { ready, progress, installed, failed, cancelled, refused, idle, fatal };

  Kind kind = Kind::idle;
  std::string identifier;
  std::string state;  ///< of "progress"
  std::int64_t received = 0;
  std::optional<std::int64_t> total;
  std::string reason;   ///< of "failed" and "refused": a stable word
  std::string message;  ///< a sentence for the user

  /// Nothing for a line that is none, or of another version of the protocol.
  static std::optional<DownloaderEvent> decode(std::string_view line);
};

/// The lines of the application, each with its line feed.
namespace downloader_command {

std::string download(const std::vector<std::string>& identifiers, MRMModelDownloadImportance importance);
std::string cancel(const std::vector<std::string>& identifiers, bool discard);
std::string runtime(bool active);

}  // namespace downloader_command

}  // namespace murmel
