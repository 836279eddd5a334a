#pragma once

#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace murmel::downloader {

/// Of the lines both ways.
inline constexpr int protocolVersion = 1;

struct DownloadCommand {
  std::vector<std::string> identifiers;
  MRMModelDownloadImportance importance = MRMModelDownloadImportance::required;
};
struct CancelCommand {
  std::vector<std::string> identifiers;
  bool discards = false;  ///< also what has arrived so far
};
struct RuntimeCommand {
  bool active = false;
};
using Command = std::variant<DownloadCommand, CancelCommand, RuntimeCommand>;

/// Longest line that is looked at, in bytes: the whole manifest in one command, ten times.
inline constexpr std::size_t longestCommand = 32 * 1'024;

/// Reads one line. The error is the reason word of the refusal.
std::expected<Command, std::string> parseCommand(std::string_view line);

}  // namespace murmel::downloader
