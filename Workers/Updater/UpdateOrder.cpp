#include "Workers/Updater/UpdateOrder.h"

#include "Foundation/Crypto/Base64.h"
#include "Foundation/Json/Json.h"
#include "Foundation/Text/LineSplitter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>

#include <poll.h>
#include <unistd.h>

namespace murmel::updater {

namespace {

constexpr std::size_t longestOrder = base64::encodedSize(largestFeed) + 1'024;
constexpr const char* misunderstood = "The updater was told something that it does not understand.";

std::optional<std::string> readLine(int input) {
  LineSplitter lines(longestOrder);
  std::array<char, std::size_t{16} * 1'024> bytes{};
  while (true) {
    if (const auto line = lines.next())
      return line->tooLong ? std::nullopt : std::optional(std::string(line->text));
    const auto count = ::read(input, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::nullopt;
    lines.append({bytes.data(), static_cast<std::size_t>(count)});
  }
}

}  // namespace

std::expected<UpdateRelease, std::string> readOrder(int input, const UpdaterOptions& options,
                                                    std::int64_t now) {
  const auto line = readLine(input);
  if (!line) return std::unexpected(misunderstood);
  const auto order = parsedJson(*line);
  const auto encoded = order["feed"].view();
  const auto sha256 = order["sha256"].view();
  const auto serial = order["serial"].unsignedInteger();
  if (!encoded || !sha256 || !serial) return std::unexpected(misunderstood);
  const auto bytes = base64::decoded(*encoded);
  if (!bytes) return std::unexpected(misunderstood);
  const auto feed = readUpdateFeed({reinterpret_cast<const char*>(bytes->data()), bytes->size()},
                                   options.fingerprint, now, *serial);
  if (!feed) return std::unexpected(std::string(sentence(feed.error())));
  const auto found = std::ranges::find(feed->releases, *sha256, &UpdateRelease::sha256);
  if (found == feed->releases.end()) return std::unexpected("This version is not on the list of updates.");
  return *found;
}

bool hasEnded(int input) {
  pollfd state{.fd = input, .events = POLLIN, .revents = 0};
  return ::poll(&state, 1, 0) > 0;
}

}  // namespace murmel::updater
