#include "MRMUpdatePolicy/UpdateFeed.h"

#include "Foundation/Json/Json.h"
#include "MRMUpdatePolicy/ReleaseKey.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace murmel {

namespace {

constexpr std::string_view header = "murmel-update-feed 1\n";
constexpr std::int64_t largestRelease = std::int64_t{4} << 30;
constexpr std::size_t longestNotes = 16 * 1'024;
constexpr std::size_t digestDigits = 64;

/// Takes "name value\n" off the front of `rest`.
std::optional<std::string_view> takeLine(std::string_view& rest, std::string_view name) {
  const auto end = rest.find('\n');
  if (end == std::string_view::npos || !rest.starts_with(name)) return std::nullopt;
  const auto value = rest.substr(name.size(), end - name.size());
  rest.remove_prefix(end + 1);
  return value;
}

bool isDigest(std::string_view digits) {
  return digits.size() == digestDigits &&
         std::ranges::all_of(digits, [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
}

std::optional<UpdateRelease> releaseFrom(const Json& object) {
  auto version = object["version"].text();
  const auto build = object["build"].unsignedInteger();
  auto channel = object["channel"].text();
  auto edition = object["edition"].text();
  auto architecture = object["architecture"].text();
  const auto size = object["size"].integer();
  auto sha256 = object["sha256"].text();
  auto url = object["url"].text();
  if (!version || !build || !channel || !edition || !architecture || !size || !sha256 || !url)
    return std::nullopt;
  if (*size <= 0 || *size > largestRelease || !isDigest(*sha256) || !url->starts_with("https://"))
    return std::nullopt;
  auto notes = object["notes"].textOrEmpty();
  if (notes.size() > longestNotes) return std::nullopt;
  return UpdateRelease{.version = *std::move(version),
                       .build = *build,
                       .channel = *std::move(channel),
                       .edition = *std::move(edition),
                       .architecture = *std::move(architecture),
                       .minimumSystem = object["minimumSystem"].textOrEmpty(),
                       .notes = std::move(notes),
                       .size = *size,
                       .sha256 = *std::move(sha256),
                       .url = *std::move(url)};
}

std::optional<UpdateFeed> feedFrom(std::string_view document) {
  const auto object = parsedJson(document);
  const auto serial = object["serial"].unsignedInteger();
  const auto expires = object["expires"].integer();
  const auto& releases = object["releases"];
  if (!serial || !expires || *expires < 0 || !releases.isArray()) return std::nullopt;
  UpdateFeed feed{.serial = *serial, .expires = *expires, .releases = {}};
  for (const auto& element : releases.elements()) {
    auto release = releaseFrom(element);
    if (!release) return std::nullopt;
    feed.releases.push_back(*std::move(release));
  }
  return feed;
}

}  // namespace

std::string_view sentence(FeedFault fault) {
  switch (fault) {
    case FeedFault::malformed:
      return "The list of updates cannot be read.";
    case FeedFault::wrongKey:
    case FeedFault::badSignature:
      return "The list of updates is not signed by the makers of this app.";
    case FeedFault::expired:
      return "The list of updates is out of date. Check the computer's clock, or try again later.";
    case FeedFault::rolledBack:
      return "The list of updates is older than one that was seen before.";
  }
  std::unreachable();
}

std::expected<UpdateFeed, FeedFault> readUpdateFeed(std::string_view bytes, std::string_view trusted,
                                                    std::int64_t now, std::uint64_t highestSerial) {
  if (bytes.size() > largestFeed || !bytes.starts_with(header)) return std::unexpected(FeedFault::malformed);
  auto rest = bytes.substr(header.size());
  const auto keyDigits = takeLine(rest, "key ");
  const auto signatureDigits = takeLine(rest, "signature ");
  if (!keyDigits || !signatureDigits) return std::unexpected(FeedFault::malformed);
  const auto key = publicKeyFromDigits(*keyDigits);
  const auto signature = signatureFromDigits(*signatureDigits);
  if (!key || !signature) return std::unexpected(FeedFault::malformed);
  if (trusted.empty() || fingerprint(*key) != trusted) return std::unexpected(FeedFault::wrongKey);
  const auto covered = std::string(header).append(rest);
  const std::span message(reinterpret_cast<const std::uint8_t*>(covered.data()), covered.size());
  if (!ed25519::verify(*key, message, *signature)) return std::unexpected(FeedFault::badSignature);

  auto feed = feedFrom(rest);
  if (!feed) return std::unexpected(FeedFault::malformed);
  if (feed->expires <= now) return std::unexpected(FeedFault::expired);
  if (feed->serial < highestSerial) return std::unexpected(FeedFault::rolledBack);
  return *std::move(feed);
}

std::optional<UpdateRelease> releaseFor(const UpdateFeed& feed, const UpdateSubject& subject) {
  const UpdateRelease* best = nullptr;
  for (const auto& release : feed.releases) {
    const bool suits = release.channel == subject.channel && release.edition == subject.edition &&
                       release.architecture == subject.architecture &&
                       isAtLeast(subject.system, release.minimumSystem);
    if (suits && release.build > subject.build && (best == nullptr || release.build > best->build))
      best = &release;
  }
  return best == nullptr ? std::nullopt : std::optional(*best);
}

bool isAtLeast(std::string_view version, std::string_view minimum) {
  const auto takeNumber = [](std::string_view& rest) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
    rest.remove_prefix(static_cast<std::size_t>(end - rest.data()));
    if (rest.starts_with('.'))
      rest.remove_prefix(1);
    else
      rest = {};  // what follows is no number of ours
    return error == std::errc() ? value : 0;
  };
  while (!minimum.empty()) {
    const auto wanted = takeNumber(minimum);
    const auto has = takeNumber(version);
    if (has != wanted) return has > wanted;
  }
  return true;
}

}  // namespace murmel
