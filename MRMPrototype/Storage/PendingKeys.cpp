#include "Storage/PendingKeys.h"

#include "Storage/FileAccess.h"

#include <algorithm>
#include <cerrno>
#include <ranges>
#include <string_view>

namespace murmel {

namespace {

constexpr std::string_view eraseLine = "erase";
constexpr std::uint64_t largestKeysFile = 64 << 10;

}  // namespace

PendingKeys::PendingKeys(FileSystem& files, const std::filesystem::path& sealedFile)
    : files_(files), path_(sealedFile) {
  path_ += ".pending";
}

FileResult<bool> PendingKeys::exists() const {
  const auto copy = files_.exists(temporaryPath(path_));
  if (!copy || *copy) return copy;
  return files_.exists(path_);
}

FileResult<PendingKeys::Contents> PendingKeys::load() const {
  const auto bytes = readWholeFile(files_, path_, largestKeysFile);
  Contents contents;
  if (!bytes && bytes.error() == EFBIG) return contents;
  if (!bytes) return std::unexpected(bytes.error());
  if (!*bytes) return contents;
  std::string_view rest(reinterpret_cast<const char*>((*bytes)->data()), (*bytes)->size());
  // A last line without its end was never finished, so its key was never made.
  for (auto end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    const auto line = rest.substr(0, end);
    rest.remove_prefix(end + 1);
    if (line == eraseLine) {
      contents.erasing = true;
    } else if (!line.empty()) {
      contents.identifiers.emplace_back(line);
    }
  }
  return contents;
}

FileResult<void> PendingKeys::save(const Contents& contents) const {
  std::string text;
  if (contents.erasing) text.append(eraseLine).append("\n");
  const auto excess = std::max(contents.identifiers.size(), mostIdentifiers) - mostIdentifiers;
  for (const auto& identifier : contents.identifiers | std::views::drop(excess))
    text.append(identifier).append("\n");
  const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
  return replaceFile(files_, path_, bytes, {}, Durability::process);
}

FileResult<void> PendingKeys::clear() const {
  if (const auto removed = removeIfPresent(files_, temporaryPath(path_)); !removed) return removed;
  return removeIfPresent(files_, path_);
}

}  // namespace murmel
