#include "Settings/JsonDefaultsStore.h"

#include "Storage/FileAccess.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace murmel {

namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t largestFile = 16 << 20;
// Another writer holds the lock for some milliseconds; whoever holds it longer is stopped.
constexpr Duration lockLimit = 500ms;

std::string reason(int errorNumber) {
  return std::generic_category().message(errorNumber);
}

}  // namespace

JsonDefaultsStore::JsonDefaultsStore(FileSystem& files, std::filesystem::path file)
    : files_(files), file_(std::move(file)) {
  if (readFile() != Read::damaged) return;
  // Out of the way at once, and not only at the next change: until then everything would look as never set.
  const auto lock = files_.lock(lockPath(file_), lockLimit);
  if (!lock) {
    report(fmt::format("The settings file {} is damaged and cannot be replaced ({}).", file_.string(),
                       reason(lock.error())));
  } else if (readFile() == Read::damaged) {
    (void)store();
  }
}

std::optional<DefaultsValue> JsonDefaultsStore::value(std::string_view key) const {
  return document_.value(key);
}

bool JsonDefaultsStore::contains(std::string_view key) const {
  return document_.contains(key);
}

void JsonDefaultsStore::set(std::string_view key, DefaultsValue value) {
  change(key, std::move(value));
}

void JsonDefaultsStore::remove(std::string_view key) {
  change(key, std::nullopt);
}

JsonDefaultsStore::Read JsonDefaultsStore::readFile() {
  const auto bytes = readWholeFile(files_, file_, largestFile);
  if (!bytes) {
    report(fmt::format(
        "The settings file {} cannot be read ({}). It stays as it is; changes are kept in memory.",
        file_.string(), reason(bytes.error())));
    return Read::failed;
  }
  if (!*bytes) return Read::absent;
  auto parsed = DefaultsDocument::parse({reinterpret_cast<const char*>((*bytes)->data()), (*bytes)->size()});
  if (!parsed) return Read::damaged;
  document_ = std::move(*parsed);
  return Read::document;
}

void JsonDefaultsStore::change(std::string_view key, std::optional<DefaultsValue> value) {
  unstored_.insert_or_assign(std::string(key), std::move(value));
  applyUnstored();
  if (const auto made = files_.makeFolders(file_.parent_path()); !made) {
    report(fmt::format("The folder of the settings {} cannot be made ({}).", file_.parent_path().string(),
                       reason(made.error())));
    return;
  }
  const auto lock = files_.lock(lockPath(file_), lockLimit);
  if (!lock) {
    report(fmt::format("The settings file {} is in use ({}). Changes are kept in memory.", file_.string(),
                       reason(lock.error())));
    return;
  }
  (void)store();
}

/// With the lock held.
bool JsonDefaultsStore::store() {
  const auto read = readFile();
  if (read == Read::failed) return false;
  if (read == Read::damaged) {
    const auto aside = setFileAside(files_, file_);
    if (!aside) {
      report(fmt::format(
          "The settings file {} is damaged and cannot be set aside ({}). Changes are kept in memory.",
          file_.string(), reason(aside.error())));
      return false;
    }
    report(fmt::format("The settings file was damaged. It was set aside as {}.", aside->string()));
  }
  applyUnstored();
  const auto text = document_.text();
  const auto written =
      replaceFile(files_, file_, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
  if (!written) {
    report(fmt::format("The settings file {} cannot be written ({}). Changes are kept in memory.",
                       file_.string(), reason(written.error())));
    return false;
  }
  unstored_.clear();
  return true;
}

void JsonDefaultsStore::applyUnstored() {
  for (const auto& [key, value] : unstored_) {
    if (value) {
      document_.set(key, *value);
    } else {
      document_.remove(key);
    }
  }
}

void JsonDefaultsStore::report(std::string message) {
  if (std::ranges::find(messages_, message) != messages_.end()) return;
  messages_.push_back(message);
  messageAdded_.emit(std::move(message));
}

}  // namespace murmel
