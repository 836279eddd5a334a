#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace murmel::downloader {

/// The downloader listens.
struct ReadyReport {};
/// How far one file is; `state` is one of "waiting", "checking", "downloading", "suspended", "retrying",
/// "installing".
struct ProgressReport {
  std::string identifier;
  std::string_view state;
  std::int64_t received = 0;          ///< bytes
  std::optional<std::int64_t> total;  ///< bytes
  std::string cause;                  ///< of "retrying": one sentence for the user
};
/// The file is in its place, whole and verified.
struct InstalledReport {
  std::string identifier;
};
struct FailedReport {
  std::string identifier;
  std::string reason;   ///< stable word
  std::string message;  ///< one sentence for the user
};
struct CancelledReport {
  std::string identifier;
};
/// A command, or one identifier of it, is not carried out.
struct RefusedReport {
  std::string reason;                     ///< stable word
  std::optional<std::string> identifier;  ///< cut to what can be shown
};
/// Nothing is left to do.
struct IdleReport {};
/// The downloader cannot work at all and ends.
struct FatalReport {
  std::string message;
};

using Report = std::variant<ReadyReport, ProgressReport, InstalledReport, FailedReport, CancelledReport,
                            RefusedReport, IdleReport, FatalReport>;

/// One line of JSON, with its line feed.
std::string lineFor(const Report& report);

}  // namespace murmel::downloader
