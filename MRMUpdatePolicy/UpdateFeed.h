#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// One version that can be had for one kind of installation.
struct UpdateRelease {
  std::string version;  ///< for people
  std::uint64_t build = 0;
  std::string channel;        ///< "developer-id"
  std::string edition;        ///< "complete", "lite"
  std::string architecture;   ///< as `uname -m` says it
  std::string minimumSystem;  ///< version of glibc, "2.36"; empty for any
  std::string notes;          ///< plain text
  std::int64_t size = 0;      ///< bytes
  std::string sha256;         ///< 64 lower-case hexadecimal digits
  std::string url;            ///< https

  friend bool operator==(const UpdateRelease&, const UpdateRelease&) = default;
};

/// What the release key has signed.
struct UpdateFeed {
  std::uint64_t serial = 0;  ///< grows with every feed
  std::int64_t expires = 0;  ///< seconds since 1970
  std::vector<UpdateRelease> releases;
};

enum class FeedFault {
  malformed,
  wrongKey,      ///< signed, but by another key
  badSignature,  ///< changed after it was signed
  expired,
  rolledBack,  ///< older than one that has been seen
};

/// One sentence for the user.
std::string_view sentence(FeedFault fault);

/// Longest feed that is looked at.
inline constexpr std::size_t largestFeed = std::size_t{256} * 1'024;

/// Reads a feed: three lines, then a JSON document to the end.
///
///     murmel-update-feed 1
///     key <64: the Ed25519 public key>
///     signature <128: over the first line and the document>
///     { "serial": 7, "expires": 1790000000, "releases": [ { … } ] }
///
/// The signature covers bytes, and nothing of the document is looked at before it holds. `fingerprint` is the
/// release key's; `now` in seconds since 1970; `highestSerial` is the highest that has been seen.
std::expected<UpdateFeed, FeedFault> readUpdateFeed(std::string_view bytes, std::string_view fingerprint,
                                                    std::int64_t now, std::uint64_t highestSerial);

/// What an installation says about itself when it looks for its release.
struct UpdateSubject {
  std::uint64_t build = 0;
  std::string channel;
  std::string edition;
  std::string architecture;
  std::string system;  ///< version of glibc
};

/// The newest release for `subject` that is newer than it; nothing when it has the newest.
std::optional<UpdateRelease> releaseFor(const UpdateFeed& feed, const UpdateSubject& subject);

/// Whether the dotted numbers of `version` are at least those of `minimum`. An empty minimum suits all.
bool isAtLeast(std::string_view version, std::string_view minimum);

}  // namespace murmel
